#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// What a computing operation would say if it failed now. Every such operation keeps one as a local and overwrites the
/// description before each step, so that a failure is reported with the step that was under way.
struct ErrorContext {
    const wchar_t* source; ///< class and operation joined by two colons
    const wchar_t* description = L"Unspecified";
    const wchar_t* helpFile = L"Unspecified"; // never changed
    DWORD helpContext = 0;                    // never changed
};

} // namespace qmv40
