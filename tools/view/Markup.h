#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qmv40::view {

/// Text for HTML and SVG.

/// Text as it is written between tags or in an attribute. Bytes that are no UTF-8, and characters that XML has no place
/// for, become the replacement character.
std::string MarkupText(const std::string& text);

/// The first `columns` columns of a text, the last of them three dots when that is not all. Letters of the East Asian
/// scripts take two columns.
std::string CutText(const std::string& text, std::size_t columns);

/// Bytes as letters, RFC 4648.
std::string Base64(std::string_view bytes);

/// What stands in the place of "@NAME@".
struct Filling {
    std::string_view placeholder;
    std::string text;
};

/// A template with its placeholders filled in one pass: what is filled in is not looked at again. Throws InputError in
/// the name of the template's file unless each placeholder stands there exactly once.
std::string FilledTemplate(const std::string& fileName, std::string_view content, std::span<const Filling> fillings);

} // namespace qmv40::view
