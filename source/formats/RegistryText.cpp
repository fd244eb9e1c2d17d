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

/// Whether `inner` is a subkey of `outer`, at any depth.
bool IsBelow(std::string_view outer, std::string_view inner) {
    return inner.size() > outer.size() && inner[outer.size()] == '\\' && StartsWithIgnoringCase(inner, outer);
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

/// Takes `"text"` off the front.
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

/// Takes `"name"=` or `@=` off the front.
std::optional<std::string> TakeName(std::string_view& line) {
    SkipBlanks(line);
    std::optional<std::string> name = Skip(line, "@") ? std::string() : TakeQuoted(line);
    SkipBlanks(line);
    if (!Skip(line, "=")) return std::nullopt;
    SkipBlanks(line);
    return name;
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

/// The type in `hex:` or `hex(2):`, taken off the front.
std::optional<RegistryType> TakeHexType(std::string_view& line) {
    constexpr std::size_t mostDigits = 8;
    if (Skip(line, ":")) return RegistryType::Binary;
    if (!Skip(line, "(")) return std::nullopt;
    const std::optional<std::uint32_t> type = TakeHex(line, mostDigits);
    if (!type || !Skip(line, "):")) return std::nullopt;
    return RegistryType{*type};
}

/// Goes through a text line by line.
class LineReader {
public:
    explicit LineReader(std::string_view theText) : text(theText) {}

    bool IsAtEnd() const { return at >= text.size(); }
    std::string_view Peek() const { return LineAt(text, at).content; }
    std::string_view Take() {
        const TextLine line = LineAt(text, at);
        at = line.next;
        ++number;
        return line.content;
    }
    std::size_t Number() const { return number; } ///< of the line taken last, from 1

private:
    std::string_view text;
    std::size_t at = 0;
    std::size_t number = 0;
};

/// Appends the bytes of one line. Says whether the next line continues it; nothing when the line makes no sense.
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

/// The bytes that begin in `line`, with the lines that continue it. A line that should and makes no sense is not taken.
std::optional<std::string> TakeBytes(std::string_view line, LineReader& reader) {
    std::string bytes;
    std::optional<bool> isContinued = AppendBytes(line, bytes);
    while (isContinued.value_or(false) && !reader.IsAtEnd() && !NamedKeyIn(reader.Peek())) {
        isContinued = AppendBytes(reader.Peek(), bytes);
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

/// Reads the rest of a line that is below a key, and the lines that continue it.
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

/// The lines that name a key for which `isWanted` is true, and the lines below them.
template <typename IsWanted> RegistryLines LinesOf(std::string_view text, IsWanted isWanted) {
    LineReader reader(text);
    const std::string_view format = Trimmed(reader.Take());
    RegistryLines found{format == wideFormat || format == narrowFormat, {}};
    std::string key;
    bool isInKey = false;
    while (!reader.IsAtEnd()) {
        const std::string_view line = reader.Take();
        const auto add = [&](RegistryLine::Kind kind) -> RegistryLine& {
            return found.lines.emplace_back(
                RegistryLine{kind, reader.Number(), std::string(Trimmed(line)), key, {}, {}});
        };
        if (const std::optional<NamedKey> named = NamedKeyIn(line)) {
            key = named->path;
            isInKey = isWanted(named->path) && !named->isRemoval;
            if (isWanted(named->path)) add(named->isRemoval ? RegistryLine::Kind::RemovedKey : RegistryLine::Kind::Key);
        } else if (isInKey && !IsRestOfLine(line)) {
            TakeValue(line, reader, format == wideFormat, add(RegistryLine::Kind::Nonsense));
        }
    }
    return found;
}

} // namespace

RegistryKeyText::RegistryKeyText(const std::string& fileContent, std::string_view path) {
    const std::string key = std::string(root).append(path);
    const auto isKey = [&](std::string_view other) { return EqualIgnoringCase(other, key); };
    const auto isAbove = [&](std::string_view other) { return other.size() > root.size() && IsBelow(other, key); };
    RegistryLines found = LinesOf(EncodedText(fileContent).text, [&](std::string_view other) {
        return isKey(other) || IsBelow(key, other) || isAbove(other);
    });
    if (!found.hasFormat) return;
    for (RegistryLine& line : found.lines) {
        if (line.kind == RegistryLine::Kind::RemovedKey) {
            if (IsBelow(key, line.key)) continue;
            isPresent = false;
            values.clear();
        } else if (line.kind == RegistryLine::Kind::Key) {
            isPresent = isPresent || !isAbove(line.key);
        } else if (line.kind != RegistryLine::Kind::Nonsense && isKey(line.key)) {
            values.push_back(std::move(line));
        }
    }
}

std::optional<RegistryValue> RegistryKeyText::Find(std::string_view name) const {
    const auto found = std::find_if(values.rbegin(), values.rend(),
                                    [&](const RegistryLine& line) { return EqualIgnoringCase(line.name, name); });
    return found == values.rend() ? std::nullopt : found->value;
}

RegistryLines RegistryLinesIn(const std::string& fileContent) {
    return LinesOf(EncodedText(fileContent).text, [](std::string_view) { return true; });
}

} // namespace qmv40
