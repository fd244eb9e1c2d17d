#pragma once

#include "platform/Automation.h"

#include <string>

namespace qmv40::bindings {

/// A refusal by these bindings, before the component is called.
struct Refusal {
    HRESULT code;
    const char* description;
};

/// The last failed call, for qmv40_last_error.
struct Failure {
    HRESULT code = S_OK;
    std::string source;
    std::string description;
};

/// Removes the thread's error record and keeps its texts. Without a record, `call` is the source.
void KeepComponentFailure(Failure& failure, HRESULT code, const char* call);
void KeepRefusal(Failure& failure, const Refusal& refusal, const char* call);

} // namespace qmv40::bindings
