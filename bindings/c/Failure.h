#pragma once

#include "platform/Automation.h"

#include <string>
#include <string_view>
#include <type_traits>

namespace qmv40::bindings {

/// The character type that has the encoding of wide texts on this platform, UTF-16 or UTF-32. With it
/// std::filesystem::path converts in the same way in every locale; its conversion of wchar_t can depend on the locale.
using WideUnit = std::conditional_t<sizeof(wchar_t) == sizeof(char16_t), char16_t, char32_t>;

std::string ToUtf8(std::wstring_view text);

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
