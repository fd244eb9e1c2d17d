// Registration of the class and its type library.

#include "interface/Identifiers.h"
#include "platform/ComPointer.h"
#include "server/windows/Application.h"
#include "server/windows/ClassKeys.h"
#include "server/windows/IRegistrar.h"

#include <new>
#include <string>

using namespace qmv40;

namespace {

constexpr UINT scriptResource = 101;
constexpr WORD majorVersion = 1;
constexpr WORD minorVersion = 0;
constexpr LCID locale = 1033;
/// The type library is registered for each architecture separately; its types are the same.
constexpr SYSKIND platform = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;

/// The registrar needs an apartment: the caller's, or one for the duration of the call.
class Apartment {
public:
    Apartment() noexcept : entered(CoInitialize(nullptr)) {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() {
        if (SUCCEEDED(entered)) CoUninitialize();
    }

private:
    HRESULT entered;
};

/// A path for a quoted text of the script: each apostrophe is doubled.
std::wstring Quoted(const std::wstring& path) {
    std::wstring quoted;
    for (const wchar_t character : path) {
        quoted += character;
        if (character == L'\'') quoted += character;
    }
    return quoted;
}

using ApplyScript = HRESULT (STDMETHODCALLTYPE IRegistrar::*)(LPCOLESTR, UINT, LPCOLESTR);

HRESULT RunScript(const std::wstring& modulePath, ApplyScript apply) {
    ComPointer<IRegistrar> registrar;
    const HRESULT created =
        CoCreateInstance(CLSID_Registrar, nullptr, CLSCTX_INPROC_SERVER, IID_IRegistrar, registrar.Receive());
    if (FAILED(created)) return created;
    const HRESULT replaced = registrar->AddReplacement(L"MODULE", Quoted(modulePath).c_str());
    if (FAILED(replaced)) return replaced;
    return (registrar.Get()->*apply)(modulePath.c_str(), scriptResource, L"REGISTRY");
}

/// The type library has the locale 1033. Marshalling on some platforms looks it up with the neutral locale, 0. So an
/// entry for the neutral locale is added.
constexpr const wchar_t* neutralLocaleKey = L"TypeLib\\{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645}\\1.0\\0";
constexpr const wchar_t* neutralPlatformKey = platform == SYS_WIN64
                                                  ? L"TypeLib\\{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645}\\1.0\\0\\win64"
                                                  : L"TypeLib\\{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645}\\1.0\\0\\win32";

HRESULT RegisterNeutralLocale(const std::wstring& modulePath) {
    const auto bytes = static_cast<DWORD>((modulePath.size() + 1) * sizeof(wchar_t));
    return HRESULT_FROM_WIN32(static_cast<unsigned long>(
        RegSetKeyValueW(HKEY_CLASSES_ROOT, neutralPlatformKey, nullptr, REG_SZ, modulePath.c_str(), bytes)));
}

void UnregisterNeutralLocale() {
    RegDeleteKeyW(HKEY_CLASSES_ROOT, neutralPlatformKey);
    // This key is deleted only if it has no other subkeys.
    RegDeleteKeyW(HKEY_CLASSES_ROOT, neutralLocaleKey);
}

HRESULT RegisterTypeLibrary(const std::wstring& modulePath) {
    ComPointer<ITypeLib> library;
    const HRESULT loaded = CQMVCalculatorApp::Instance().LoadTypeLibrary(library.Receive());
    if (FAILED(loaded)) return loaded;
    std::wstring path = modulePath;
    const HRESULT registered = RegisterTypeLib(library.Get(), path.data(), nullptr);
    return FAILED(registered) ? registered : RegisterNeutralLocale(modulePath);
}

bool IsTypeLibraryRegistered() {
    BSTR path = nullptr;
    const HRESULT found = QueryPathOfRegTypeLib(LIBID_CoQMV40CalculatorLib, majorVersion, minorVersion, locale, &path);
    SysFreeString(path);
    return SUCCEEDED(found);
}

HRESULT UnregisterTypeLibrary() {
    // Unregistering twice is no failure.
    if (!IsTypeLibraryRegistered()) return S_OK;
    UnregisterNeutralLocale();
    return UnRegisterTypeLib(LIBID_CoQMV40CalculatorLib, majorVersion, minorVersion, locale, platform);
}

HRESULT RegisterClass(const std::wstring& modulePath) {
    const HRESULT scripted = RunScript(modulePath, &IRegistrar::ResourceRegister);
    return scripted == REGDB_E_CLASSNOTREG ? WriteClassKeys(modulePath) : scripted;
}

HRESULT UnregisterClass(const std::wstring& modulePath) {
    // The script would also remove the program names, which the other architecture uses.
    if (IsClassOfOtherArchitectureRegistered()) return RemoveClassKeys();
    const HRESULT scripted = RunScript(modulePath, &IRegistrar::ResourceUnregister);
    return scripted == REGDB_E_CLASSNOTREG ? RemoveClassKeys() : scripted;
}

/// The registrar does not remove what it wrote before a failure. This removes it: an incomplete registration would make
/// clients fail with misleading codes.
HRESULT RemoveAllUnless(HRESULT registered) {
    if (FAILED(registered)) {
        RemoveClassKeys();
        UnregisterTypeLibrary();
    }
    return registered;
}

} // namespace

STDAPI DllRegisterServer() try {
    const Apartment apartment;
    // If the caller has no rights, the registrar may return DISP_E_EXCEPTION only; this returns "access denied".
    const HRESULT probed = ProbeClassKeys();
    if (FAILED(probed)) return probed;
    const std::wstring modulePath = CQMVCalculatorApp::Instance().ModulePath();
    const HRESULT registered = RegisterClass(modulePath);
    return RemoveAllUnless(FAILED(registered) ? registered : RegisterTypeLibrary(modulePath));
} catch (const std::bad_alloc&) {
    return RemoveAllUnless(E_OUTOFMEMORY);
}

STDAPI DllUnregisterServer() try {
    const Apartment apartment;
    const HRESULT unregistered = UnregisterClass(CQMVCalculatorApp::Instance().ModulePath());
    const HRESULT libraryUnregistered = UnregisterTypeLibrary();
    return FAILED(unregistered) ? unregistered : libraryUnregistered;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}
