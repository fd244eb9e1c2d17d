#include "tools/text/WideText.h"

#include "tools/text/Failures.h"

#include <windows.h>

namespace qmv40::text {

namespace {

/// True when the name can be written in the ANSI code page. The component passes the name to functions that accept no
/// other.
bool IsInAnsiCodePage(const std::wstring& name) {
    BOOL usedDefault = FALSE;
    WideCharToMultiByte(CP_THREAD_ACP, WC_NO_BEST_FIT_CHARS, name.c_str(), -1, nullptr, 0, nullptr, &usedDefault);
    return usedDefault == FALSE;
}

} // namespace

std::string ToUtf8(std::wstring_view wide) {
    const std::u8string utf8 = std::filesystem::path(wide).u8string();
    return {utf8.begin(), utf8.end()};
}

std::wstring FileNameForComponent(const std::filesystem::path& path) {
    std::wstring name = path.wstring();
    if (!IsInAnsiCodePage(name)) {
        throw InputError{ToUtf8(name), {}, "the name has letters outside this machine's ANSI code page"};
    }
    return name;
}

} // namespace qmv40::text
