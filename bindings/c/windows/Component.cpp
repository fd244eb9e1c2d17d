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
    // slot, which it never releases.
    const HMODULE module = ModuleOf(&qmv40_version, GET_MODULE_HANDLE_EX_FLAG_PIN);
    const std::filesystem::path file = FileOfModule(module).parent_path() / L"CoQMV40Calculator.dll";
    return GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES ? std::filesystem::path() : file;
}

/// The function of the component's library that gives its class object. Null if the library has none.
GetClassObject* ClassObjectEntry(HMODULE module) {
    const FARPROC entry = GetProcAddress(module, "DllGetClassObject");
    return reinterpret_cast<GetClassObject*>(reinterpret_cast<void (*)()>(entry));
}

Component CreateFrom(const std::filesystem::path& file) {
    const HMODULE module = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    GetClassObject* const entry = module == nullptr ? nullptr : ClassObjectEntry(module);
    if (entry == nullptr)
        throw Refusal{HRESULT_FROM_WIN32(GetLastError()), "the component beside this library cannot be loaded"};
    ComPointer<IClassFactory> factory;
    HRESULT code = entry(CLSID_QMVCalculator, IID_IClassFactory, factory.Receive());
    if (FAILED(code)) throw Refusal{code, "the component beside this library has no such class"};
    Component created;
    code = factory->CreateInstance(nullptr, IID_IQMVCalculator2, created.Receive());
    if (FAILED(code)) throw Refusal{code, "the component beside this library cannot be created"};
    return created;
}

Component CreateRegistered() {
    Component created;
    const HRESULT code =
        CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, created.Receive());
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
    return beside.empty() ? CreateRegistered() : CreateFrom(beside);
}

std::string FileOf(const Component& component) {
    const void* const classTable = *reinterpret_cast<void* const*>(component.Get());
    const HMODULE module = ModuleOf(classTable, GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
    return ToUtf8(FileOfModule(module).native());
}

} // namespace qmv40::bindings
