#pragma once

#include "errors/RaiseError.h"
#include "platform/ModuleState.h"

#include <new>

namespace qmv40 {

/// The boundary of every interface method that returns its failures: runs `body` in the module's state and turns a
/// raised error into the method's result. The only place that does.
template <typename Body> HRESULT Guarded(Body&& body) {
    const ModuleStateGuard moduleState;
    try {
        body();
        return S_OK;
    } catch (const HRESULT code) {
        return code;
    } catch (const std::bad_alloc&) {
        // Nothing was recorded for this one, and an older record would tell of another failure.
        SetErrorInfo(0, nullptr);
        return E_OUTOFMEMORY;
    }
}

} // namespace qmv40
