#pragma once

#include <bit>
#include <optional>
#include <string>
#include <string_view>

namespace qmv40 {

/// Conversions between wide names, UTF-8 and UTF-16.

/// UTF-8 of a wide name. Returns nothing if the name is null or contains a value that is not a character.
std::optional<std::string> NarrowName(const wchar_t* name);

/// UTF-8 of the UTF-16 text in `bytes`. A lone surrogate becomes the three bytes of its number. An odd last byte is
/// ignored.
std::string Utf8FromUtf16(std::string_view bytes, std::endian order);

/// The reverse conversion. A byte that belongs to no character becomes the replacement character (U+FFFD).
std::string Utf16FromUtf8(std::string_view text, std::endian order);

} // namespace qmv40
