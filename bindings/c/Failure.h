#pragma once

#include "platform/Automation.h"

#include <string>

namespace qmv40::bindings {

/// What these bindings refuse by themselves, before the component is asked.
struct Refusal {
    HRESULT code;
    const char* description;
};

/// A call that failed, as qmv40_last_error tells it.
struct Failure {
    HRESULT code = S_OK;
    std::string source;
    std::string description;
};

/// Keeps the texts of the thread's error record, which it takes out; without a record `call` is the source.
void KeepComponentFailure(Failure& failure, HRESULT code, const char* call);
void KeepRefusal(Failure& failure, const Refusal& refusal, const char* call);

} // namespace qmv40::bindings
