#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// The texts with which a computing operation reports a failure. Every such operation has one as a local variable and
/// sets the description before each step, so that a failure is reported with the step in which it occurred.
struct ErrorContext {
    const wchar_t* source; ///< class and operation joined by two colons
    const wchar_t* description = L"Unspecified";
    const wchar_t* helpFile = L"Unspecified";
    DWORD helpContext = 0;
};

} // namespace qmv40
