#include "formats/RegistryText.h"

#include "formats/AsciiText.h"
#include "formats/Unicode.h"

#include <charconv>
#include <utility>

using namespace ascii_text;

namespace {

constexpr std::string_view wideFormat{"Windows Registry Editor Version 5.00"};
constexpr std::string_view narrowFormat{"REGEDIT4"};
constexpr std::string_view root{"HKEY_LOCAL_MACHINE\\"};

std::string InUtf8(std::string content) {
    const std::string_view all(content);
    if (all.starts_with("\xFF\xFE")) return Utf8FromUtf16(all.substr(2), std::endian::little);
    if (all.starts_with("\xFE\xFF")) return Utf8FromUtf16(all.substr(2), std::endian::big);
    if (all.starts_with("\xEF\xBB\xBF")) content.erase(0, 3);
    return content;
}

bool Skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(expected.size());
    return true;
}

void SkipBlanks(std::string_view& text) { text = TrimmedLeft(text); }

/// Whether nothing of meaning is left on the line.
bool IsRestOfLine(std::string_view text) {
    SkipBlanks(text);
    return text.empty() || text.front() == ';';
}

/// What a heading line does to the key that is looked for.
enum class Heading { None, OtherKey, KeyBelow, Key, Removal };

/// Whether `key` is a subkey of `ancestor`, at any depth.
bool IsBelow(std::string_view ancestor, std::string_view key) {
    return key.size() > ancestor.size() && key[ancestor.size()] == '\\' && StartsWithIgnoringCase(key, ancestor);
}

Heading HeadingOf(std::string_view line, std::string_view path) {
    SkipBlanks(line);
    const std::size_t close = line.rfind(']');
    if (close == std::string_view::npos || !Skip(line, "[")) return Heading::None;
    line = line.substr(0, close - 1);
    const bool isRemoval = Skip(line, "-");
    if (!StartsWithIgnoringCase(line, root)) return Heading::OtherKey;
    line.remove_prefix(root.size());
    if (line.ends_with('\\')) line.remove_suffix(1);
    const bool isKey = EqualIgnoringCase(line, path);
    if (isRemoval) return isKey || IsBelow(line, path) ? Heading::Removal : Heading::OtherKey;
    if (isKey) return Heading::Key;
    return IsBelow(path, line) ? Heading::KeyBelow : Heading::OtherKey;
}

char Unescaped(char c) {
    switch (c) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case '0':
        return '\0';
    default:
        return c;
    }
}

/// Takes `"text"` off the front and hands each of its characters to `take`; false when there is no such text, or as
/// soon as `take` refuses a character.
template <typename Take> bool TakeQuoted(std::string_view& line, Take take) {
    if (!Skip(line, "\"")) return false;
    while (!line.empty()) {
        char c = line.front();
        line.remove_prefix(1);
        if (c == '"') return true;
        if (c == '\\' && !line.empty()) {
            c = Unescaped(line.front());
            line.remove_prefix(1);
        }
        if (!take(c)) return false;
    }
    return false;
}

/// Takes `"name"=` or `@=` off the front, if that is what stands there.
bool TakeName(std::string_view& line, std::string_view name) {
    const auto isNext = [&](char c) {
        if (name.empty() || UpperAscii(c) != UpperAscii(name.front())) return false;
        name.remove_prefix(1);
        return true;
    };
    SkipBlanks(line);
    if (!Skip(line, "@") && !TakeQuoted(line, isNext)) return false;
    SkipBlanks(line);
    if (!name.empty() || !Skip(line, "=")) return false;
    SkipBlanks(line);
    return true;
}

/// Takes a hexadecimal number of at most `mostDigits` digits off the front.
std::optional<std::uint32_t> TakeHex(std::string_view& line, std::size_t mostDigits) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number, 16);
    const auto length = static_cast<std::size_t>(end - line.data());
    if (error != std::errc{} || length > mostDigits) return std::nullopt;
    line.remove_prefix(length);
    return number;
}

std::optional<RegistryValue> TakeText(std::string_view line) {
    RegistryValue value{RegistryType::Text, {}};
    const auto append = [&](char c) { return value.bytes.push_back(c), true; };
    if (!TakeQuoted(line, append) || !IsRestOfLine(line)) return std::nullopt;
    value.bytes.push_back('\0');
    return value;
}

std::optional<RegistryValue> TakeNumber(std::string_view line) {
    constexpr std::size_t mostDigits = 8;
    const std::optional<std::uint32_t> number = TakeHex(line, mostDigits);
    if (!number || !IsRestOfLine(line)) return std::nullopt;
    RegistryValue value{RegistryType::Number, {}};
    for (int shift = 0; shift < 32; shift += 8) value.bytes.push_back(static_cast<char>(*number >> shift & 0xFFU));
    return value;
}

/// The type in `hex:` or `hex(2):`, taken off the front.
std::optional<RegistryType> TakeHexType(std::string_view& line) {
    constexpr std::size_t mostDigits = 8;
    if (Skip(line, ":")) return RegistryType::Binary;
    if (!Skip(line, "(")) return std::nullopt;
    const std::optional<std::uint32_t> type = TakeHex(line, mostDigits);
    if (!type || !Skip(line, "):")) return std::nullopt;
    return RegistryType{*type};
}

/// The bytes that `text` begins with, up to the end of the last line that a backslash continues.
std::optional<std::string> TakeBytes(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0;;) {
        const TextLine whole = LineAt(text, at);
        at = whole.next;
        std::string_view line = TrimmedLeft(whole.content);
        while (!IsRestOfLine(line) && line.front() != '\\') {
            const std::optional<std::uint32_t> byte = TakeHex(line, 2);
            if (!byte) return std::nullopt;
            bytes.push_back(static_cast<char>(*byte));
            SkipBlanks(line);
            if (!Skip(line, ",") && !IsRestOfLine(line)) return std::nullopt;
            SkipBlanks(line);
        }
        const bool isContinued = Skip(line, "\\");
        if (!IsRestOfLine(line)) return std::nullopt;
        if (!isContinued || at >= text.size()) return bytes;
    }
}

std::optional<RegistryValue> TakeTypedBytes(std::string_view text, bool hasWideTexts) {
    const std::optional<RegistryType> type = TakeHexType(text);
    std::optional<std::string> bytes = type ? TakeBytes(text) : std::nullopt;
    if (!bytes) return std::nullopt;
    const bool isText =
        *type == RegistryType::Text || *type == RegistryType::ExpandableText || *type == RegistryType::TextList;
    if (!isText || !hasWideTexts) return RegistryValue{*type, std::move(*bytes)};
    if (bytes->size() % 2 != 0) bytes->push_back('\0');
    return RegistryValue{*type, Utf8FromUtf16(*bytes, std::endian::little)};
}

} // namespace

RegistryKeyText::RegistryKeyText(std::string fileContent, std::string_view path)
    : text(InUtf8(std::move(fileContent))) {
    const TextLine format = LineAt(text, 0);
    hasWideTexts = Trimmed(format.content) == wideFormat;
    if (hasWideTexts || Trimmed(format.content) == narrowFormat) FindKey(format.next, path);
}

void RegistryKeyText::FindKey(std::size_t at, std::string_view path) {
    bool isInKey = false;
    while (at < text.size()) {
        const TextLine line = LineAt(text, at);
        at = line.next;
        const Heading heading = HeadingOf(line.content, path);
        if (heading == Heading::None) continue;
        if (isInKey) parts.back().end = line.begin;
        isInKey = heading == Heading::Key;
        if (isInKey) parts.push_back({line.next, text.size()});
        if (isInKey || heading == Heading::KeyBelow) isPresent = true;
        if (heading == Heading::Removal) {
            isPresent = false;
            parts.clear();
        }
    }
}

std::optional<RegistryValue> RegistryKeyText::Find(std::string_view name) const {
    std::optional<RegistryValue> value;
    for (const Lines& lines : parts) FindIn(lines, name, value);
    return value;
}

void RegistryKeyText::FindIn(const Lines& lines, std::string_view name, std::optional<RegistryValue>& value) const {
    const std::string_view part = std::string_view(text).substr(0, lines.end);
    for (std::size_t at = lines.begin; at < lines.end;) {
        const TextLine whole = LineAt(part, at);
        at = whole.next;
        std::string_view line = whole.content;
        if (!TakeName(line, name)) continue;
        if (line.starts_with('-') && IsRestOfLine(line.substr(1))) {
            value.reset();
            continue;
        }
        std::optional<RegistryValue> found = TakeText(line);
        if (Skip(line, "dword:")) found = TakeNumber(line);
        if (Skip(line, "hex"))
            found = TakeTypedBytes(part.substr(static_cast<std::size_t>(line.data() - part.data())), hasWideTexts);
        if (found) value = std::move(found);
    }
}
