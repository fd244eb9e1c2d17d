#include "formats/RegistryText.h"

#include "formats/AsciiText.h"
#include "formats/Unicode.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace qmv40 {

using namespace ascii;

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

/// The key that a heading line names: with its root, without a backslash at the end.
struct NamedKey {
    std::string_view path;
    bool isRemoval;
};

std::optional<NamedKey> NamedKeyIn(std::string_view line) {
    SkipBlanks(line);
    const std::size_t close = line.rfind(']');
    if (close == std::string_view::npos || !Skip(line, "[")) return std::nullopt;
    line = line.substr(0, close - 1);
    const bool isRemoval = Skip(line, "-");
    if (line.ends_with('\\')) line.remove_suffix(1);
    return NamedKey{line, isRemoval};
}

/// What a heading line does to the key that is looked for.
enum class Heading { None, OtherKey, KeyBelow, Key, Removal };

/// Whether `inner` is a subkey of `outer`, at any depth.
bool IsBelow(std::string_view outer, std::string_view inner) {
    return inner.size() > outer.size() && inner[outer.size()] == '\\' && StartsWithIgnoringCase(inner, outer);
}

Heading HeadingOf(std::string_view line, std::string_view path) {
    const std::optional<NamedKey> named = NamedKeyIn(line);
    if (!named) return Heading::None;
    std::string_view key = named->path;
    if (!StartsWithIgnoringCase(key, root)) return Heading::OtherKey;
    key.remove_prefix(root.size());
    const bool isKey = EqualIgnoringCase(key, path);
    if (named->isRemoval) return isKey || IsBelow(key, path) ? Heading::Removal : Heading::OtherKey;
    if (isKey) return Heading::Key;
    return IsBelow(path, key) ? Heading::KeyBelow : Heading::OtherKey;
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

/// Takes `"name"=` or `@=` off the front and hands each of the name's characters to `take`; false as for TakeQuoted.
template <typename Take> bool TakeName(std::string_view& line, Take take) {
    SkipBlanks(line);
    if (!Skip(line, "@") && !TakeQuoted(line, take)) return false;
    SkipBlanks(line);
    if (!Skip(line, "=")) return false;
    SkipBlanks(line);
    return true;
}

bool TakeThisName(std::string_view& line, std::string_view name) {
    const auto isNext = [&](char c) {
        if (name.empty() || UpperAscii(c) != UpperAscii(name.front())) return false;
        name.remove_prefix(1);
        return true;
    };
    return TakeName(line, isNext) && name.empty();
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

/// What a line says about a value behind its name: what it is, that it is removed, or nothing of sense.
struct Assignment {
    std::optional<RegistryValue> value;
    bool isRemoval = false;
    std::size_t next; ///< where the first line begins that does not belong to it
};

/// The bytes that stand at `at`, up to the end of the last line that a backslash continues, where `at` is then.
std::optional<std::string> TakeBytes(std::string_view text, std::size_t& at) {
    std::string bytes;
    for (std::size_t begin = at;; begin = at) {
        const TextLine whole = LineAt(text, begin);
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
        at = whole.next;
        if (!isContinued || at >= text.size()) return bytes;
    }
}

std::optional<RegistryValue> TakeTypedBytes(std::string_view text, std::size_t& at, bool hasWideTexts) {
    std::string_view rest = text.substr(at);
    const std::optional<RegistryType> type = TakeHexType(rest);
    if (!type) return std::nullopt;
    at = text.size() - rest.size();
    std::optional<std::string> bytes = TakeBytes(text, at);
    if (!bytes) return std::nullopt;
    const bool isText =
        *type == RegistryType::Text || *type == RegistryType::ExpandableText || *type == RegistryType::TextList;
    if (!isText || !hasWideTexts) return RegistryValue{*type, std::move(*bytes)};
    if (bytes->size() % 2 != 0) bytes->push_back('\0');
    return RegistryValue{*type, Utf8FromUtf16(*bytes, std::endian::little)};
}

/// What stands in `line`, a part of `whole` behind a name. `text` ends where the key's lines do.
Assignment TakeAssignment(std::string_view text, const TextLine& whole, std::string_view line, bool hasWideTexts) {
    Assignment found{TakeText(line), line.starts_with('-') && IsRestOfLine(line.substr(1)), whole.next};
    if (Skip(line, "dword:")) found.value = TakeNumber(line);
    if (Skip(line, "hex")) {
        auto at = static_cast<std::size_t>(line.data() - text.data());
        found.value = TakeTypedBytes(text, at, hasWideTexts);
        found.next = std::max(at, whole.next); // a line that continues nothing of sense is one of its own
    }
    return found;
}

/// Where the line begins that names a key, at `at` or behind it.
std::size_t NextHeading(std::string_view text, std::size_t at) {
    while (at < text.size()) {
        const TextLine line = LineAt(text, at);
        if (NamedKeyIn(line.content)) return at;
        at = line.next;
    }
    return text.size();
}

/// Whether the text begins with a name of the format, and whether with the one whose texts are UTF-16.
struct Format {
    bool isKnown;
    bool hasWideTexts;
    std::size_t end;
};

Format FormatOf(std::string_view text) {
    const TextLine line = LineAt(text, 0);
    const std::string_view name = Trimmed(line.content);
    return {name == wideFormat || name == narrowFormat, name == wideFormat, line.next};
}

/// Goes through a text line by line and keeps what they say.
class Listing {
public:
    explicit Listing(std::string_view theText) : text(theText), format(FormatOf(text)) {}

    RegistryLines Take() {
        lines.hasFormat = format.isKnown;
        const std::size_t firstHeading = NextHeading(text, format.end);
        CountUpTo(firstHeading);
        for (std::size_t at = firstHeading; at < text.size(); at = TakeKey(at)) {
        }
        return std::move(lines);
    }

private:
    void CountUpTo(std::size_t end) {
        while (counted < end) {
            counted = LineAt(text, counted).next;
            ++number;
        }
    }

    RegistryLine& Add(RegistryLine::Kind kind, const TextLine& line) {
        CountUpTo(line.begin);
        return lines.lines.emplace_back(
            RegistryLine{kind, number + 1, std::string(Trimmed(line.content)), key, {}, {}});
    }

    /// Takes the heading at `at` and the lines below it; gives the place of the next heading.
    std::size_t TakeKey(std::size_t at) {
        const TextLine heading = LineAt(text, at);
        const std::size_t end = NextHeading(text, heading.next);
        const std::optional<NamedKey> named = NamedKeyIn(heading.content);
        if (!named) return end;
        key = std::string(named->path);
        Add(named->isRemoval ? RegistryLine::Kind::RemovedKey : RegistryLine::Kind::Key, heading);
        for (std::size_t line = heading.next; line < end && !named->isRemoval;)
            line = TakeLine(text.substr(0, end), line);
        return end;
    }

    std::size_t TakeLine(std::string_view keyText, std::size_t at) {
        const TextLine whole = LineAt(keyText, at);
        if (IsRestOfLine(whole.content)) return whole.next;
        RegistryLine& line = Add(RegistryLine::Kind::Nonsense, whole);
        std::string_view rest = whole.content;
        const auto append = [&](char c) { return line.name.push_back(c), true; };
        if (!TakeName(rest, append)) {
            line.name.clear();
            return whole.next;
        }
        Assignment assignment = TakeAssignment(keyText, whole, rest, format.hasWideTexts);
        if (assignment.isRemoval) line.kind = RegistryLine::Kind::RemovedValue;
        if (assignment.value) line.kind = RegistryLine::Kind::Value;
        line.value = std::move(assignment.value);
        return assignment.next;
    }

    std::string_view text;
    Format format;
    RegistryLines lines;
    std::string key;
    std::size_t counted = 0;
    std::size_t number = 0; ///< of lines before `counted`
};

} // namespace

RegistryKeyText::RegistryKeyText(std::string fileContent, std::string_view path)
    : text(InUtf8(std::move(fileContent))) {
    const Format format = FormatOf(text);
    hasWideTexts = format.hasWideTexts;
    if (format.isKnown) FindKey(format.end, path);
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
        if (!TakeThisName(line, name)) continue;
        Assignment found = TakeAssignment(part, whole, line, hasWideTexts);
        if (found.isRemoval) value.reset();
        if (found.value) value = std::move(found.value);
    }
}

RegistryLines RegistryLinesIn(std::string fileContent) {
    const std::string text = InUtf8(std::move(fileContent));
    return Listing(text).Take();
}

} // namespace qmv40
