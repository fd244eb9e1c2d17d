#include "tools/text/Text.h"

#include <algorithm>
#include <cstdint>

namespace qmv40::text {

namespace {

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::uint32_t UnitAt(std::string_view bytes, std::size_t at, ByteOrder order) {
    const std::uint32_t first = static_cast<unsigned char>(bytes[at]);
    const std::uint32_t second = static_cast<unsigned char>(at + 1 < bytes.size() ? bytes[at + 1] : '\0');
    return order == ByteOrder::LittleEndian ? first | second << 8U : second | first << 8U;
}

void AppendUtf8(std::uint32_t character, std::string& text) {
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    const int continuations = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::uint32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(leads[continuations] | character >> (6 * continuations));
    for (int i = continuations - 1; i >= 0; --i) text += static_cast<char>(0x80U | (character >> (6 * i) & 0x3FU));
}

bool IsLeadingSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsTrailingSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

} // namespace

std::filesystem::path PathOf(const std::string& utf8Name) { return {std::u8string(utf8Name.begin(), utf8Name.end())}; }

std::string Utf8Name(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool SameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, LowerCase, LowerCase);
}

std::string DecodedText(std::string_view content) {
    if (content.starts_with("\xFF\xFE")) return Utf8FromUtf16(content.substr(2), ByteOrder::LittleEndian);
    if (content.starts_with("\xFE\xFF")) return Utf8FromUtf16(content.substr(2), ByteOrder::BigEndian);
    if (content.starts_with("\xEF\xBB\xBF")) content.remove_prefix(3);
    return std::string(content);
}

std::string Utf8FromUtf16(std::string_view bytes, ByteOrder order) {
    constexpr std::uint32_t replacement = 0xFFFD;
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        std::uint32_t character = UnitAt(bytes, at, order);
        if (IsLeadingSurrogate(character) && at + 2 < bytes.size()) {
            const std::uint32_t next = UnitAt(bytes, at + 2, order);
            if (IsTrailingSurrogate(next)) {
                character = 0x10000 + ((character - 0xD800) << 10U) + (next - 0xDC00);
                at += 2;
            }
        }
        const bool isLone = IsLeadingSurrogate(character) || IsTrailingSurrogate(character);
        AppendUtf8(isLone ? replacement : character, text);
    }
    return text;
}

} // namespace qmv40::text
