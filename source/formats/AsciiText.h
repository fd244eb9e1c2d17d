#pragma once

#include <algorithm>
#include <string_view>

/// For both text formats of this folder: blanks, lines, and comparison that ignores the case of ASCII letters.

namespace qmv40::ascii {

/// Blanks within a line. The old end-of-file mark of text files (Ctrl-Z) counts as one.
inline constexpr std::string_view blanks{" \t\v\f\x1A"};

inline std::string_view TrimmedLeft(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text;
}

inline std::string_view TrimmedRight(std::string_view text) {
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

inline std::string_view Trimmed(std::string_view text) { return TrimmedRight(TrimmedLeft(text)); }

inline char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

inline bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(),
                                                     [](char a, char b) { return UpperAscii(a) == UpperAscii(b); });
}

inline bool StartsWithIgnoringCase(std::string_view text, std::string_view start) {
    return EqualIgnoringCase(text.substr(0, start.size()), start);
}

/// One line of a text. `begin`, `end` and `next` are indices into that text.
struct TextLine {
    std::string_view content; ///< without the line end
    std::size_t begin;
    std::size_t end;  ///< of the content
    std::size_t next; ///< where the next line begins: after the line end
};

/// The index of the first CR or LF from `at` on, or the end of the text.
inline std::size_t EndOfLine(std::string_view text, std::size_t at) {
    // Two memchr passes over 64 bytes are much faster than one find_first_of.
    constexpr std::size_t partSize = 64;
    for (; at < text.size(); at += partSize) {
        const std::string_view part = text.substr(at, partSize);
        const std::size_t found = std::min(part.find('\n'), part.find('\r'));
        if (found != std::string_view::npos) return at + found;
    }
    return text.size();
}

/// The line that begins at `begin`. CR LF, LF and CR all end a line.
inline TextLine LineAt(std::string_view text, std::size_t begin) {
    const std::size_t end = EndOfLine(text, begin);
    const std::size_t lineEnd = text.substr(end).starts_with("\r\n") ? 2 : 1;
    return {text.substr(begin, end - begin), begin, end, std::min(end + lineEnd, text.size())};
}

/// Reads the lines of a text, one after the other.
class LineReader {
public:
    explicit LineReader(std::string_view theText, std::size_t begin = 0) : text(theText), at(begin) {}

    bool IsAtEnd() const { return at >= text.size(); }
    TextLine Peek() const { return LineAt(text, at); }
    TextLine Take() {
        const TextLine line = Peek();
        at = line.next;
        ++number;
        return line;
    }
    std::size_t Number() const { return number; } ///< of the line taken last, from 1

private:
    std::string_view text;
    std::size_t at;
    std::size_t number = 0;
};

} // namespace qmv40::ascii
