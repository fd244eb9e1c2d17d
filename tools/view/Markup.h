#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qmv40::view {

/// Text for HTML and SVG

/// The text escaped for use between tags or in an attribute. Bytes that are not UTF-8, control characters (line ends
/// too) and characters that XML does not allow become the replacement character.
std::string MarkupText(const std::string& text);

/// The text, cut to `columns` columns; a text that was cut ends in an ellipsis. Characters from U+1000 up, such as
/// those of the East Asian scripts, count as two columns.
std::string CutText(const std::string& text, std::size_t columns);

/// Base64 of RFC 4648.
std::string Base64(std::string_view bytes);

/// The text that replaces "@NAME@".
struct Filling {
    std::string_view placeholder;
    std::string text;
};

/// A template with its placeholders replaced. Text that was filled in is not searched again. Throws InputError, with
/// the template's name, unless each placeholder occurs exactly once.
std::string FilledTemplate(const std::string& fileName, std::string_view content, std::span<const Filling> fillings);

} // namespace qmv40::view
