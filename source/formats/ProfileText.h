#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40 {

/// The content of a profile file as text: `[section]` lines, and lines `key=value` below them.
///
/// Blanks around lines, names and values are ignored, and so is the case of ASCII letters in names. The name of a
/// section ends at the last `]` of its line; the rest of the line is ignored. A line that begins with `[` but has no
/// `]` is an ordinary line. A lookup knows no comments: the line `;a=1` holds the key ";a". Section "" is the text
/// before the first section line. If several sections or keys have the same name, the first is used. A zero byte ends
/// the value.

/// The value, with its quotes. Returns nothing if the key is missing or its line has no `=`.
std::optional<std::string_view> FindProfileValue(std::string_view text, std::string_view section, std::string_view key);

/// Replaces the value of the key. A line that has the key but no `=` gets both. A missing key is added after the last
/// line of its section that is not blank, a missing section at the end of the text. Everything else stays unchanged. An
/// added line gets the line end that is most frequent in the text (CR LF in an empty text).
void SetProfileValue(std::string& text, std::string_view section, std::string_view key, std::string_view value);

/// A line of the text.
struct ProfileLine {
    enum class Kind {
        Blank,
        Comment, ///< begins with `;`
        Section,
        Entry,
        NoValue ///< has no `=`: its key counts as missing, and hides a later key of the same name
    };
    Kind kind;
    std::size_t number;       ///< line number, from 1
    std::string_view section; ///< of a section line its own name, else the name of the section that contains the line
    std::string_view key;     ///< of an entry, and of a line without a value
    std::string_view value;   ///< of an entry, quotes included
    bool isHidden;            ///< an earlier section or key of the same name is used instead
};

/// All lines in their order. The views refer to `text`.
std::vector<ProfileLine> ProfileLines(std::string_view text);

} // namespace qmv40
