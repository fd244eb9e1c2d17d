#include "cli/Text.h"

#include <algorithm>

namespace {

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

std::filesystem::path PathOf(const std::string& utf8Name) { return {std::u8string(utf8Name.begin(), utf8Name.end())}; }

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool SameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, LowerCase, LowerCase);
}
