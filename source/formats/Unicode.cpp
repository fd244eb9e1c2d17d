#include "formats/Unicode.h"

namespace qmv40 {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr char32_t lastCodePoint = 0x10FFFF;
constexpr char32_t firstBeyondOneUnit = 0x10000;

bool IsLeadSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsTrailSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
unsigned char Byte(char c) { return static_cast<unsigned char>(c); }

void AppendUtf8(std::string& text, char32_t codePoint) {
    const auto append = [&](char32_t bits) { text.push_back(static_cast<char>(bits)); };
    const auto appendRest = [&](int shift) { append(0x80U | ((codePoint >> shift) & 0x3FU)); };
    if (codePoint < 0x80) return append(codePoint);
    if (codePoint < 0x800) return append(0xC0U | codePoint >> 6), appendRest(0);
    if (codePoint < firstBeyondOneUnit) return append(0xE0U | codePoint >> 12), appendRest(6), appendRest(0);
    append(0xF0U | codePoint >> 18), appendRest(12), appendRest(6), appendRest(0);
}

/// The length of a UTF-8 sequence whose first byte is `lead`; 0 if no sequence begins with it.
std::size_t SequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC2) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return lead < 0xF5 ? 4 : 0;
}

/// Removes the first character of `text` and returns it. A byte that belongs to no character gives the replacement
/// character.
char32_t TakeCodePoint(std::string_view& text) {
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, firstBeyondOneUnit};
    constexpr unsigned leadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const std::string_view all = text;
    const std::size_t length = SequenceLength(Byte(all.front()));
    text.remove_prefix(1);
    if (length == 0 || length > all.size()) return replacementCharacter;
    char32_t codePoint = Byte(all.front()) & leadBits[length];
    for (std::size_t i = 1; i < length; ++i) {
        if ((Byte(all[i]) & 0xC0U) != 0x80U) return replacementCharacter;
        codePoint = codePoint << 6 | (Byte(all[i]) & 0x3FU);
    }
    if (codePoint < smallest[length] || codePoint > lastCodePoint) return replacementCharacter;
    text.remove_prefix(length - 1);
    return codePoint;
}

void AppendUnit(std::string& bytes, char32_t unit, std::endian order) {
    const auto low = static_cast<char>(unit & 0xFFU);
    const auto high = static_cast<char>(unit >> 8 & 0xFFU);
    bytes.push_back(order == std::endian::little ? low : high);
    bytes.push_back(order == std::endian::little ? high : low);
}

} // namespace

std::optional<std::string> NarrowName(const wchar_t* name) {
    if (name == nullptr) return std::nullopt;
    std::string narrow;
    for (; *name != L'\0'; ++name) {
        const auto codePoint = static_cast<char32_t>(*name);
        if (codePoint > lastCodePoint || IsLeadSurrogate(codePoint) || IsTrailSurrogate(codePoint)) return std::nullopt;
        AppendUtf8(narrow, codePoint);
    }
    return narrow;
}

std::string Utf8FromUtf16(std::string_view bytes, std::endian order) {
    const std::size_t low = order == std::endian::little ? 0 : 1;
    const auto unitAt = [&](std::size_t at) -> char32_t {
        if (at + 2 > bytes.size()) return 0;
        return char32_t{Byte(bytes[at + low])} | char32_t{Byte(bytes[at + 1 - low])} << 8;
    };
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
        char32_t codePoint = unitAt(at);
        if (IsLeadSurrogate(codePoint) && IsTrailSurrogate(unitAt(at + 2))) {
            codePoint = firstBeyondOneUnit + ((codePoint - 0xD800) << 10) + (unitAt(at + 2) - 0xDC00);
            at += 2;
        }
        AppendUtf8(text, codePoint);
    }
    return text;
}

std::string Utf16FromUtf8(std::string_view text, std::endian order) {
    std::string bytes;
    bytes.reserve(text.size() * 2);
    while (!text.empty()) {
        const char32_t codePoint = TakeCodePoint(text);
        if (codePoint < firstBeyondOneUnit) {
            AppendUnit(bytes, codePoint, order);
        } else {
            AppendUnit(bytes, 0xD800 + ((codePoint - firstBeyondOneUnit) >> 10), order);
            AppendUnit(bytes, 0xDC00 + ((codePoint - firstBeyondOneUnit) & 0x3FF), order);
        }
    }
    return bytes;
}

} // namespace qmv40
