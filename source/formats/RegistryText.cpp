#include "formats/RegistryText.h"

#include "formats/AsciiText.h"
#include "formats/EncodedText.h"
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

bool Skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(expected.size());
    return true;
}

void SkipBlanks(std::string_view& text) { text = TrimmedLeft(text); }

/// Whether only blanks or a comment are left of the line.
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

/// Whether `inner` is a subkey of `outer`, at any depth.
bool IsBelow(std::string_view outer, std::string_view inner) {
    return inner.size() > outer.size() && inner[outer.size()] == '\\' && StartsWithIgnoringCase(inner, outer);
}

char Unescaped(char c) {
    constexpr std::string_view letters("nr0"), meanings("\n\r\0", 3);
    const std::size_t at = letters.find(c);
    return at == std::string_view::npos ? c : meanings[at];
}

/// Removes `"text"` from the beginning of the line and returns the text.
std::optional<std::string> TakeQuoted(std::string_view& line) {
    if (!Skip(line, "\"")) return std::nullopt;
    std::string text;
    while (!line.empty()) {
        char c = line.front();
        line.remove_prefix(1);
        if (c == '"') return text;
        if (c == '\\' && !line.empty()) {
            c = Unescaped(line.front());
            line.remove_prefix(1);
        }
        text.push_back(c);
    }
    return std::nullopt;
}

/// Removes `"name"=` or `@=` from the beginning of the line and returns the name.
std::optional<std::string> TakeName(std::string_view& line) {
    SkipBlanks(line);
    std::optional<std::string> name = Skip(line, "@") ? std::string() : TakeQuoted(line);
    SkipBlanks(line);
    if (!Skip(line, "=")) return std::nullopt;
    SkipBlanks(line);
    return name;
}

/// Removes a hexadecimal number of at most `mostDigits` digits from the beginning of the line and returns it.
std::optional<std::uint32_t> TakeHex(std::string_view& line, std::size_t mostDigits) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number, 16);
    const auto length = static_cast<std::size_t>(end - line.data());
    if (error != std::errc{} || length > mostDigits) return std::nullopt;
    line.remove_prefix(length);
    return number;
}

std::optional<RegistryValue> TakeText(std::string_view line) {
    std::optional<std::string> text = TakeQuoted(line);
    if (!text || !IsRestOfLine(line)) return std::nullopt;
    text->push_back('\0');
    return RegistryValue{RegistryType::Text, std::move(*text)};
}

std::optional<RegistryValue> TakeNumber(std::string_view line) {
    constexpr std::size_t mostDigits = 8;
    const std::optional<std::uint32_t> number = TakeHex(line, mostDigits);
    if (!number || !IsRestOfLine(line)) return std::nullopt;
    RegistryValue value{RegistryType::Number, {}};
    for (int shift = 0; shift < 32; shift += 8) value.bytes.push_back(static_cast<char>(*number >> shift & 0xFFU));
    return value;
}

/// Removes what follows `hex` in `hex:` or `hex(2):` and returns the type.
std::optional<RegistryType> TakeHexType(std::string_view& line) {
    constexpr std::size_t mostDigits = 8;
    if (Skip(line, ":")) return RegistryType::Binary;
    if (!Skip(line, "(")) return std::nullopt;
    const std::optional<std::uint32_t> type = TakeHex(line, mostDigits);
    if (!type || !Skip(line, "):")) return std::nullopt;
    return RegistryType{*type};
}

/// Appends the bytes of one line. Returns whether the next line continues it; nothing if the line cannot be understood.
std::optional<bool> AppendBytes(std::string_view line, std::string& bytes) {
    SkipBlanks(line);
    while (!IsRestOfLine(line) && line.front() != '\\') {
        const std::optional<std::uint32_t> byte = TakeHex(line, 2);
        if (!byte) return std::nullopt;
        bytes.push_back(static_cast<char>(*byte));
        SkipBlanks(line);
        if (!Skip(line, ",") && !IsRestOfLine(line)) return std::nullopt;
        SkipBlanks(line);
    }
    const bool isContinued = Skip(line, "\\");
    return IsRestOfLine(line) ? std::optional(isContinued) : std::nullopt;
}

/// The bytes that begin in `line` and those of the lines that continue it. A continuation line that cannot be
/// understood is not read.
std::optional<std::string> TakeBytes(std::string_view line, LineReader& reader) {
    std::string bytes;
    std::optional<bool> isContinued = AppendBytes(line, bytes);
    while (isContinued.value_or(false) && !reader.IsAtEnd() && !NamedKeyIn(reader.Peek().content)) {
        isContinued = AppendBytes(reader.Peek().content, bytes);
        if (isContinued) reader.Take();
    }
    return isContinued ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<RegistryValue> TakeTypedBytes(std::string_view line, LineReader& reader, bool hasWideTexts) {
    const std::optional<RegistryType> type = TakeHexType(line);
    std::optional<std::string> bytes = type ? TakeBytes(line, reader) : std::nullopt;
    if (!bytes) return std::nullopt;
    const bool isText =
        *type == RegistryType::Text || *type == RegistryType::ExpandableText || *type == RegistryType::TextList;
    if (!isText || !hasWideTexts) return RegistryValue{*type, std::move(*bytes)};
    if (bytes->size() % 2 != 0) bytes->push_back('\0');
    return RegistryValue{*type, Utf8FromUtf16(*bytes, std::endian::little)};
}

/// Reads the rest of a line below a key, and the lines that continue it.
void TakeValue(std::string_view rest, LineReader& reader, bool hasWideTexts, RegistryLine& line) {
    const std::optional<std::string> name = TakeName(rest);
    if (!name) return;
    line.name = *name;
    if (rest.starts_with('-') && IsRestOfLine(rest.substr(1))) line.kind = RegistryLine::Kind::RemovedValue;
    line.value = Skip(rest, "dword:") ? TakeNumber(rest)
                 : Skip(rest, "hex")  ? TakeTypedBytes(rest, reader, hasWideTexts)
                                      : TakeText(rest);
    if (line.value) line.kind = RegistryLine::Kind::Value;
}

/// False for most lines that set another value. Without it, decoding all names would take most of the time of a query.
/// A name with a backslash may contain escapes, so it is not compared here.
bool MaySet(std::string_view line, std::string_view name) {
    SkipBlanks(line);
    return !Skip(line, "\"") || line.find('\\') < name.size() || StartsWithIgnoringCase(line, name);
}

} // namespace

RegistryKeyText::RegistryKeyText(const std::string& fileContent, std::string_view path)
    : text(EncodedText(fileContent).text) {
    LineReader reader(text);
    const std::string_view format = Trimmed(reader.Take().content);
    hasWideTexts = format == wideFormat;
    if (!hasWideTexts && format != narrowFormat) return;
    const std::string key = std::string(root).append(path);
    bool isInKey = false;
    while (!reader.IsAtEnd()) {
        const TextLine line = reader.Take();
        const std::optional<NamedKey> named = NamedKeyIn(line.content);
        if (!named) {
            if (isInKey) lines.push_back(line.begin);
            continue;
        }
        const bool isKey = EqualIgnoringCase(named->path, key);
        isInKey = isKey && !named->isRemoval;
        // The heading of a subkey creates the key too. The removal of an outer key removes it.
        if (isInKey || (IsBelow(key, named->path) && !named->isRemoval)) isPresent = true;
        if (named->isRemoval && (isKey || (named->path.size() > root.size() && IsBelow(named->path, key)))) {
            isPresent = false;
            lines.clear();
        }
    }
}

std::optional<RegistryValue> RegistryKeyText::Find(std::string_view name) const {
    std::optional<RegistryValue> value;
    for (const std::size_t begin : lines) {
        LineReader reader(text, begin);
        const std::string_view content = reader.Take().content;
        if (!MaySet(content, name)) continue;
        RegistryLine line{};
        line.kind = RegistryLine::Kind::Nonsense;
        TakeValue(content, reader, hasWideTexts, line);
        if (line.kind != RegistryLine::Kind::Nonsense && EqualIgnoringCase(line.name, name))
            value = std::move(line.value);
    }
    return value;
}

RegistryLines RegistryLinesIn(const std::string& fileContent) {
    const std::string text = EncodedText(fileContent).text;
    LineReader reader(text);
    const std::string_view format = Trimmed(reader.Take().content);
    RegistryLines found{format == wideFormat || format == narrowFormat, {}};
    std::string key;
    bool isInKey = false;
    while (!reader.IsAtEnd()) {
        const std::string_view content = reader.Take().content;
        const std::optional<NamedKey> named = NamedKeyIn(content);
        if (!named && (!isInKey || IsRestOfLine(content))) continue;
        if (named) {
            key = named->path;
            isInKey = !named->isRemoval;
        }
        RegistryLine& line = found.lines.emplace_back(
            RegistryLine{RegistryLine::Kind::Nonsense, reader.Number(), std::string(Trimmed(content)), key, {}, {}});
        if (named) line.kind = isInKey ? RegistryLine::Kind::Key : RegistryLine::Kind::RemovedKey;
        if (!named) TakeValue(content, reader, format == wideFormat, line);
    }
    return found;
}

} // namespace qmv40
