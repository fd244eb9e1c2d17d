#include "server/windows/Application.h"

#include <new>

namespace qmv40 {

CQMVCalculatorApp& CQMVCalculatorApp::Instance() noexcept {
    static constinit CQMVCalculatorApp application;
    return application;
}

std::wstring CQMVCalculatorApp::ModulePath() const {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

HRESULT CQMVCalculatorApp::LoadTypeLibrary(ITypeLib** library) const noexcept {
    try {
        return LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library);
    } catch (const std::bad_alloc&) {
        // Late-bound calls use this function, and no exception may leave them.
        return E_OUTOFMEMORY;
    }
}

} // namespace qmv40

// A function of the C++ runtime: frees the memory that it reserves for throwing exceptions when memory has run out.
namespace __gnu_cxx {
void __freeres(); // NOLINT(bugprone-reserved-identifier): the runtime's own name
}

// NOLINTNEXTLINE(readability-identifier-naming): the loader's own name.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_ATTACH) {
        qmv40::CQMVCalculatorApp::Instance().InitInstance(module);
        DisableThreadLibraryCalls(module);
    }
    // If no class object was requested, the module can be unloaded, with the C++ runtime in it. The runtime does not
    // free its memory reserve by itself.
    if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) __gnu_cxx::__freeres();
    return TRUE;
}
