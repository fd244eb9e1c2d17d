#pragma once

#include "platform/Automation.h"

#include <string>

namespace qmv40 {

/// The module's application object. It is created when the module is loaded and keeps the module's instance handle.
class CQMVCalculatorApp {
public:
    static CQMVCalculatorApp& Instance() noexcept;

    void InitInstance(HINSTANCE theModule) noexcept { module = theModule; }

    /// The full path of the module's own file, of any length. Throws std::bad_alloc.
    std::wstring ModulePath() const;

    /// The type library in the module's own resources, whether one is registered or not.
    HRESULT LoadTypeLibrary(ITypeLib** library) const noexcept;

private:
    constexpr CQMVCalculatorApp() = default;

    HINSTANCE module = nullptr;
};

} // namespace qmv40
