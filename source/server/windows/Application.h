#pragma once

#include "platform/Automation.h"

#include <string>

/// The module's application object: made when the module is loaded, told its instance handle, and asked for nothing
/// else until a client calls.
class CQMVCalculatorApp {
public:
    static CQMVCalculatorApp& Instance() noexcept;

    void InitInstance(HINSTANCE theModule) noexcept { module = theModule; }

    /// The module's own file, whatever its path is made of and however long it is; empty when memory runs out.
    std::wstring ModulePath() const;

    /// The type library in the module's own resources, whether one is registered or not.
    HRESULT LoadTypeLibrary(ITypeLib** library) const;

private:
    constexpr CQMVCalculatorApp() = default;

    HINSTANCE module = nullptr;
};
