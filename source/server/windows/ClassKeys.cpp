#include "server/windows/ClassKeys.h"

#include <iterator>

namespace qmv40 {

namespace {

constexpr const wchar_t* clsid = L"{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26}";
constexpr const wchar_t* classKey = LR"(CLSID\{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26})";
constexpr const wchar_t* description = L"QMVCalculator Class";
constexpr const wchar_t* program = L"QMV.QMVCalculator.1";
constexpr const wchar_t* anyVersion = L"QMV.QMVCalculator";

/// The name of a key, joined at compile time, so that the table below needs no memory.
struct KeyName {
    consteval KeyName(const wchar_t* outerKey, const wchar_t* subkey) {
        wchar_t* end = text;
        for (const wchar_t* part : {outerKey, subkey})
            while (*part != L'\0') *end++ = *part++;
    }
    wchar_t text[80]{};
};

/// A value of a key or, with a null text, a key without a value.
struct ClassValue {
    KeyName key;
    const wchar_t* name; ///< null: the key's default value
    const wchar_t* text;
};
/// Stands for the module's path.
constexpr const wchar_t* modulePathHere = L"%MODULE%";

/// Each key comes after the one that contains it.
constexpr ClassValue classValues[] = {
    {{program, L""}, nullptr, description},
    {{program, L"\\CLSID"}, nullptr, clsid},
    {{anyVersion, L""}, nullptr, description},
    {{anyVersion, L"\\CLSID"}, nullptr, clsid},
    {{anyVersion, L"\\CurVer"}, nullptr, program},
    {{classKey, L""}, nullptr, description},
    {{classKey, L"\\ProgID"}, nullptr, program},
    {{classKey, L"\\VersionIndependentProgID"}, nullptr, anyVersion},
    {{classKey, L"\\Programmable"}, nullptr, nullptr},
    {{classKey, L"\\InprocServer32"}, nullptr, modulePathHere},
    {{classKey, L"\\InprocServer32"}, L"ThreadingModel", L"Apartment"},
    {{classKey, L"\\TypeLib"}, nullptr, L"{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645}"},
};

/// The outermost keys that a registration writes to, those of the type library included.
constexpr const wchar_t* outermostKeys[] = {program,
                                            anyVersion,
                                            classKey,
                                            LR"(TypeLib\{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645})",
                                            LR"(Interface\{2C7D91E3-6F4A-4B28-8D35-9E1A7C0B4F52})",
                                            LR"(Interface\{6A3E5F82-1D9B-4C47-B6E0-58F2D7A1C93E})"};

HRESULT ResultOf(LSTATUS status) { return HRESULT_FROM_WIN32(static_cast<unsigned long>(status)); }

/// Creates the key if it does not exist, and then removes it again.
HRESULT Probe(const wchar_t* key) {
    HKEY opened = nullptr;
    DWORD disposition = 0;
    const LSTATUS made =
        RegCreateKeyExW(HKEY_CLASSES_ROOT, key, 0, nullptr, 0, KEY_WRITE, nullptr, &opened, &disposition);
    if (made != ERROR_SUCCESS) return ResultOf(made);
    RegCloseKey(opened);
    if (disposition == REG_CREATED_NEW_KEY) RegDeleteKeyW(HKEY_CLASSES_ROOT, key);
    return S_OK;
}

HRESULT Write(const ClassValue& value, const std::wstring& modulePath) {
    HKEY key = nullptr;
    LSTATUS status =
        RegCreateKeyExW(HKEY_CLASSES_ROOT, value.key.text, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) return ResultOf(status);
    if (value.text != nullptr) {
        const std::wstring text = value.text == modulePathHere ? modulePath : value.text;
        const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
        status = RegSetValueExW(key, value.name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), bytes);
    }
    RegCloseKey(key);
    return ResultOf(status);
}

/// 32-bit and 64-bit programs have separate class keys and common program names.
constexpr REGSAM otherArchitecture = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

/// Succeeds also if there is no such key.
HRESULT RemoveTree(const wchar_t* key) {
    const LSTATUS removed = RegDeleteTreeW(HKEY_CLASSES_ROOT, key);
    return removed == ERROR_FILE_NOT_FOUND ? S_OK : ResultOf(removed);
}

} // namespace

HRESULT ProbeClassKeys() {
    for (const wchar_t* const key : outermostKeys) {
        const HRESULT probed = Probe(key);
        if (FAILED(probed)) return probed;
    }
    return S_OK;
}

HRESULT WriteClassKeys(const std::wstring& modulePath) {
    HRESULT result = RemoveTree(classKey);
    for (const ClassValue& value : classValues) {
        if (SUCCEEDED(result)) result = Write(value, modulePath);
    }
    return result;
}

bool IsClassOfOtherArchitectureRegistered() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, classKey, 0, KEY_READ | otherArchitecture, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

HRESULT RemoveClassKeys() {
    const HRESULT removed = RemoveTree(classKey);
    if (IsClassOfOtherArchitectureRegistered()) return removed;
    // RegDeleteKeyW does not delete a key with subkeys: those of other programs stay.
    for (std::size_t last = std::size(classValues); last-- > 0;)
        RegDeleteKeyW(HKEY_CLASSES_ROOT, classValues[last].key.text);
    return removed;
}

} // namespace qmv40
