#include "tools/text/Text.h"

namespace qmv40::text {

std::string Joined(std::span<const std::string> texts, const std::string& separator) {
    std::string joined;
    for (const std::string& text : texts) joined += (&text == &texts.front() ? "" : separator) + text;
    return joined;
}

std::filesystem::path PathOf(const std::string& utf8Name) { return {std::u8string(utf8Name.begin(), utf8Name.end())}; }

std::string Utf8Name(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

} // namespace qmv40::text
