#pragma once

#include "interface/ErrorCodes.h"
#include "tools/text/Json.h"

#include <cstddef>
#include <string>
#include <utility>

namespace qmv40::component {

/// A failure of the component as it reports it: the code, and the texts of the thread's error record.
struct ComponentError {
    HRESULT code;
    std::string source;
    std::string description;
    std::size_t plan = 0; ///< the plan of a tour that failed, counted from 1; 0 without a tour
};

/// The failure `code` with the error record that goes with it, taken out of the thread. `withoutRecord` names the
/// failing operation where there is no record.
ComponentError TakeComponentError(HRESULT code, const char* withoutRecord);

/// The code as people write it: 0x8A00000E.
std::string CodeText(HRESULT code);

text::Json ErrorJson(const ComponentError& error);

/// What to do about a failure, in a sentence; empty when there is nothing to say.
std::string Remedy(HRESULT code);

/// Runs component code that throws its failure codes, and turns those into ComponentError.
template <typename Step> decltype(auto) CatchingCodes(const char* operation, Step&& step) {
    try {
        return std::forward<Step>(step)();
    } catch (const HRESULT code) {
        throw TakeComponentError(code, operation);
    }
}

} // namespace qmv40::component
