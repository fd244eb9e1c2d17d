#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40 {

/// The content of a profile file as text: `[section]` lines, and lines `key=value` below them.
///
/// Blanks around lines, names and values do not count, nor does the letter case of names (ASCII letters). A section's
/// name ends at the line's last `]`, and anything may follow it; a line with no `]` is a plain one. There are no
/// comments to look up past: a line `;a=1` holds the key ";a". Section "" is what stands before the first section line.
/// Of several sections or keys with one name, the first counts. A zero byte ends the value.

/// The value as it stands, quotes included; nothing for a key that is not there or whose line has no `=`.
std::optional<std::string_view> FindProfileValue(std::string_view text, std::string_view section, std::string_view key);

/// Puts `value` in the place of the key's old one, or adds the key behind the section's last line, or adds the section
/// at the text's end. Everything else stays, and added lines end as most lines of the text do (CR LF in an empty one).
void SetProfileValue(std::string& text, std::string_view section, std::string_view key, std::string_view value);

/// A line of the text.
struct ProfileLine {
    enum class Kind {
        Blank,
        Comment, ///< begins with `;`
        Section,
        Entry,
        NoValue ///< has no `=`: its key is not there, and hides a later one of the same name
    };
    Kind kind;
    std::size_t number;       ///< counted from 1
    std::string_view section; ///< its own name, or that of the section that the line is in
    std::string_view key;     ///< of an entry, and of a line without a value
    std::string_view value;   ///< of an entry, quotes included
    bool isHidden;            ///< an earlier section or key of the same name counts in its place
};

/// Every line of the text, in its order. The parts are places in the text.
std::vector<ProfileLine> ProfileLines(std::string_view text);

} // namespace qmv40
