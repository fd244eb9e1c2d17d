#include "bindings/c/Component.h"

#include "bindings/c/Failure.h"
#include "bindings/c/qmv40.h"

#include <filesystem>

namespace qmv40::bindings {

namespace {

using GetClassObject = HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**);

template <typename Address> HMODULE ModuleOf(Address address, DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags, reinterpret_cast<LPCWSTR>(address), &module);
    return module;
}

std::filesystem::path FileOfModule(HMODULE module) {
    constexpr std::size_t longestName = 32768;
    std::wstring name(longestName, L'\0');
    name.resize(GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

/// The component's file beside this library; empty when there is none.
std::filesystem::path FileBeside() {
    // The library stays loaded: with each load, its copy of the compiler's runtime would take a thread-local storage
    // slot.
    const HMODULE module = ModuleOf(&qmv40_version, GET_MODULE_HANDLE_EX_FLAG_PIN);
    const std::filesystem::path file = FileOfModule(module).parent_path() / L"CoQMV40Calculator.dll";
    return GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES ? std::filesystem::path() : file;
}

/// The function of the component's library that gives its class object. Null if the library has none.
GetClassObject* ClassObjectEntry(HMODULE module) {
    const FARPROC entry = GetProcAddress(module, "DllGetClassObject");
    return reinterpret_cast<GetClassObject*>(reinterpret_cast<void (*)()>(entry));
}

void* CreateFrom(const std::filesystem::path& file) {
    const HMODULE module = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    GetClassObject* const entry = module == nullptr ? nullptr : ClassObjectEntry(module);
    if (entry == nullptr)
        throw Refusal{HRESULT_FROM_WIN32(GetLastError()), "the component beside this library cannot be loaded"};
    void* found = nullptr;
    HRESULT code = entry(CLSID_QMVCalculator, IID_IClassFactory, &found);
    if (FAILED(code)) throw Refusal{code, "the component beside this library has no such class"};
    const std::unique_ptr<IClassFactory, Releaser> factory(static_cast<IClassFactory*>(found));
    void* created = nullptr;
    code = factory->CreateInstance(nullptr, IID_IQMVCalculator2, &created);
    if (FAILED(code)) throw Refusal{code, "the component beside this library cannot be created"};
    return created;
}

void* CreateRegistered() {
    void* created = nullptr;
    const HRESULT code =
        CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, &created);
    if (FAILED(code)) throw Refusal{code, "no component is beside this library, and none is registered"};
    return created;
}

} // namespace

ThreadReadiness::ThreadReadiness() {
    // RPC_E_CHANGED_MODE: the program has put the thread into the multi-threaded apartment.
    if (SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) apartmentsThread = GetCurrentThreadId();
}

ThreadReadiness::~ThreadReadiness() {
    if (apartmentsThread == GetCurrentThreadId()) CoUninitialize(); // only the initialising thread can uninitialise it
}

Component CreateComponent() {
    const std::filesystem::path beside = FileBeside();
    return Component(static_cast<IQMVCalculator2*>(beside.empty() ? CreateRegistered() : CreateFrom(beside)));
}

std::string FileOf(const Component& component) {
    const void* const classTable = *reinterpret_cast<void* const*>(component.get());
    const HMODULE module = ModuleOf(classTable, GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
    return ToUtf8(FileOfModule(module).native());
}

std::wstring ComponentFileName(std::u8string_view name) {
    try {
        return std::filesystem::absolute(name).wstring();
    } catch (const std::filesystem::filesystem_error&) {
        throw Refusal{E_INVALIDARG, "the file name is not UTF-8"};
    }
}

std::string ToUtf8(std::wstring_view text) {
    const std::u8string utf8 = std::filesystem::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}

} // namespace qmv40::bindings
