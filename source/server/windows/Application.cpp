#include "server/windows/Application.h"

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

HRESULT CQMVCalculatorApp::LoadTypeLibrary(ITypeLib** library) const {
    return LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library);
}

// NOLINTNEXTLINE(readability-identifier-naming): the loader's own name.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        CQMVCalculatorApp::Instance().InitInstance(module);
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
