#pragma once

#include <optional>
#include <string>
#include <string_view>

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
