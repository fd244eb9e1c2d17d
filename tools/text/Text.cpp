#include "tools/text/Text.h"

#include <algorithm>

namespace qmv40::text {

std::string Joined(std::span<const std::string> texts, const std::string& separator) {
    std::string joined;
    for (const std::string& text : texts) joined += (&text == &texts.front() ? "" : separator) + text;
    return joined;
}

std::string Replaced(std::string_view text, std::span<const std::pair<char, std::string_view>> words) {
    std::string replaced;
    for (const char c : text) {
        const auto word = std::ranges::find(words, c, &std::pair<char, std::string_view>::first);
        replaced += word == words.end() ? std::string_view(&c, 1) : word->second;
    }
    return replaced;
}

std::filesystem::path PathOf(const std::string& utf8Name) { return {std::u8string(utf8Name.begin(), utf8Name.end())}; }

std::string Utf8Name(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

} // namespace qmv40::text
