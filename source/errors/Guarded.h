#pragma once

#include "errors/RaiseError.h"
#include "platform/ModuleState.h"

#include <new>

namespace qmv40 {

/// The boundary of every method of the calculator's two interfaces: runs `body` with the module's floating-point state
/// and converts a raised error into a result. No other code of the component does this.
template <typename Body> HRESULT Guarded(Body&& body) {
    const ModuleStateGuard moduleState;
    try {
        body();
        return S_OK;
    } catch (const HRESULT code) {
        return code;
    } catch (const std::bad_alloc&) {
        // This failure has no error record. An older record would describe another failure, so it is removed.
        SetErrorInfo(0, nullptr);
        return E_OUTOFMEMORY;
    }
}

} // namespace qmv40
