#include "tools/text/WideText.h"

#include "tools/text/Failures.h"

namespace qmv40::text {

// std::filesystem::path converts between UTF-8 and UTF-32 in the same way in every locale. Conversion between narrow
// and wide depends on the locale.

std::string ToUtf8(std::wstring_view wide) {
    const std::u8string utf8 = std::filesystem::path(std::u32string(wide.begin(), wide.end())).u8string();
    return {utf8.begin(), utf8.end()};
}

std::wstring FileNameForComponent(const std::filesystem::path& path) {
    try {
        const std::u32string name = path.u32string();
        return {name.begin(), name.end()};
    } catch (const std::filesystem::filesystem_error&) {
        throw InputError{path.string(), {}, "the name is not UTF-8"};
    }
}

} // namespace qmv40::text
