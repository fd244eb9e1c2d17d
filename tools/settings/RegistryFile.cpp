#include "tools/settings/RegistryFile.h"

#include "tools/text/Text.h"

#include <algorithm>
#include <charconv>

namespace qmv40::settings {

namespace {

constexpr std::string_view wideFormat{"Windows Registry Editor Version 5.00"};
constexpr std::string_view narrowFormat{"REGEDIT4"};
constexpr DWORD multipleTexts = 7;
constexpr std::size_t longestHexNumber = 8;

bool Skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(expected.size());
    return true;
}

// The old end-of-file mark of text files (Ctrl-Z) counts as a blank.
constexpr std::string_view blanks{" \t\v\f\x1A"};

std::string_view WithoutBlanksBefore(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text;
}

std::string_view WithoutBlanks(std::string_view text) {
    text = WithoutBlanksBefore(text);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// Nothing of meaning is left on the line.
bool IsRestOfLine(std::string_view text) {
    text = WithoutBlanksBefore(text);
    return text.empty() || text.front() == ';';
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
        const char c = line.front();
        line.remove_prefix(1);
        if (c == '"') return text;
        const bool isEscape = c == '\\' && !line.empty();
        text += isEscape ? Unescaped(line.front()) : c;
        if (isEscape) line.remove_prefix(1);
    }
    return std::nullopt;
}

std::optional<std::string> TakeName(std::string_view& line) {
    line = WithoutBlanksBefore(line);
    std::optional<std::string> name = Skip(line, "@") ? std::string() : TakeQuoted(line);
    line = WithoutBlanksBefore(line);
    if (!name || !Skip(line, "=")) return std::nullopt;
    line = WithoutBlanksBefore(line);
    return name;
}

std::optional<DWORD> TakeHex(std::string_view& text, std::size_t mostDigits) {
    DWORD number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc{} || length > mostDigits) return std::nullopt;
    text.remove_prefix(length);
    return number;
}

/// The lines of a file, one after the other.
class Lines {
public:
    explicit Lines(std::string_view content) : rest(content) {}

    bool HasMore() const { return !rest.empty(); }
    std::size_t Number() const { return number; }
    std::string_view Take() {
        const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + (rest.substr(end).starts_with("\r\n") ? 2 : 1), rest.size()));
        ++number;
        return line;
    }

private:
    std::string_view rest;
    std::size_t number = 0;
};

/// The bytes on one line; `isContinued` when a backslash says that the next line goes on. False for nonsense.
bool AppendBytes(std::string_view line, std::string& bytes, bool& isContinued) {
    line = WithoutBlanksBefore(line);
    while (!IsRestOfLine(line) && line.front() != '\\') {
        const std::optional<DWORD> byte = TakeHex(line, 2);
        if (!byte) return false;
        bytes += static_cast<char>(*byte);
        line = WithoutBlanksBefore(line);
        if (!Skip(line, ",") && !IsRestOfLine(line)) return false;
        line = WithoutBlanksBefore(line);
    }
    isContinued = Skip(line, "\\");
    return IsRestOfLine(line);
}

std::optional<DWORD> TakeBytesType(std::string_view& line) {
    if (Skip(line, ":")) return REG_BINARY;
    if (!Skip(line, "(")) return std::nullopt;
    const std::optional<DWORD> type = TakeHex(line, longestHexNumber);
    return Skip(line, "):") ? type : std::nullopt;
}

bool IsTextType(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == multipleTexts; }

/// The key that a heading line names; nothing when it is no heading.
std::optional<RegistryFileKey> Heading(std::string_view line, std::size_t number) {
    line = WithoutBlanksBefore(line);
    const std::size_t close = line.rfind(']');
    if (close == std::string_view::npos || !Skip(line, "[")) return std::nullopt;
    line = line.substr(0, close - 1);
    const bool isRemoval = Skip(line, "-");
    if (line.ends_with('\\')) line.remove_suffix(1);
    return RegistryFileKey{std::string(line), isRemoval, number, {}};
}

bool IsHeading(std::string_view line) { return Heading(line, 0).has_value(); }

/// Reads the values of one file, whose format says what the bytes of texts are.
class ValueReader {
public:
    ValueReader(Lines& theLines, bool theTextsAreWide) : lines(theLines), textsAreWide(theTextsAreWide) {}

    /// A line below a key; nothing for a blank or a comment.
    std::optional<RegistryLine> Read(std::string_view line) {
        if (IsRestOfLine(line)) return std::nullopt;
        RegistryLine read{RegistryLine::Kind::Nonsense, lines.Number(), std::string(WithoutBlanks(line)), {}};
        const std::optional<std::string> name = TakeName(line);
        if (!name) return read;
        read.value = {*name, REG_NONE, {}, read.line};
        if (line.starts_with('-') && IsRestOfLine(line.substr(1))) {
            read.kind = RegistryLine::Kind::Removal;
        } else if (TakeText(line, read.value) || TakeNumber(line, read.value) || TakeBytes(line, read.value)) {
            read.kind = RegistryLine::Kind::Value;
        }
        return read;
    }

private:
    static bool TakeText(std::string_view line, StoredValue& value) {
        const std::optional<std::string> text = TakeQuoted(line);
        if (!text || !IsRestOfLine(line)) return false;
        value.type = REG_SZ;
        value.bytes = *text + '\0';
        return true;
    }

    static bool TakeNumber(std::string_view line, StoredValue& value) {
        if (!Skip(line, "dword:")) return false;
        const std::optional<DWORD> number = TakeHex(line, longestHexNumber);
        if (!number || !IsRestOfLine(line)) return false;
        value.type = REG_DWORD;
        for (int shift = 0; shift < 32; shift += 8) value.bytes += static_cast<char>(*number >> shift & 0xFFU);
        return true;
    }

    bool TakeBytes(std::string_view line, StoredValue& value) {
        if (!Skip(line, "hex")) return false;
        const std::optional<DWORD> type = TakeBytesType(line);
        if (!type) return false;
        std::string bytes;
        bool isContinued = false;
        if (!AppendBytes(line, bytes, isContinued)) return false;
        // Lines that do not continue the bytes after all are read again as lines of their own.
        Lines ahead = lines;
        while (isContinued && ahead.HasMore()) {
            const std::string_view next = ahead.Take();
            if (IsHeading(next)) break;
            if (!AppendBytes(next, bytes, isContinued)) return false;
            lines = ahead;
        }
        value.type = *type;
        value.bytes =
            IsTextType(*type) && textsAreWide ? text::Utf8FromUtf16(bytes, text::ByteOrder::LittleEndian) : bytes;
        return true;
    }

    Lines& lines;
    bool textsAreWide;
};

} // namespace

RegistryFile ParseRegistryFile(std::string_view content) {
    const std::string text = text::DecodedText(content);
    Lines lines(text);
    const std::string_view format = WithoutBlanks(lines.Take());
    RegistryFile file;
    file.hasFormat = format == wideFormat || format == narrowFormat;
    ValueReader values(lines, format == wideFormat);
    while (lines.HasMore()) {
        const std::string_view line = lines.Take();
        if (std::optional<RegistryFileKey> key = Heading(line, lines.Number())) {
            file.keys.push_back(std::move(*key));
        } else if (!file.keys.empty()) {
            if (std::optional<RegistryLine> read = values.Read(line))
                file.keys.back().lines.push_back(std::move(*read));
        }
    }
    return file;
}

std::optional<std::string> TextOf(const StoredValue& value) {
    if (value.type != REG_SZ && value.type != REG_EXPAND_SZ) return std::nullopt;
    return value.bytes.substr(0, value.bytes.find('\0'));
}

std::string TypeText(DWORD type) {
    switch (type) {
    case REG_SZ:
        return "a text";
    case REG_EXPAND_SZ:
        return "a text (hex(2))";
    case REG_DWORD:
        return "a number (dword)";
    case REG_BINARY:
        return "bytes (hex)";
    case multipleTexts:
        return "a list of texts (hex(7))";
    default:
        return "of type " + std::to_string(type);
    }
}

} // namespace qmv40::settings
