#pragma once

#include <bit>
#include <optional>
#include <string>
#include <string_view>

namespace qmv40 {

/// Conversions between wide names, UTF-8 and UTF-16.

/// UTF-8 of a wide name; nothing when it is null or holds something that is no character.
std::optional<std::string> NarrowName(const wchar_t* name);

/// UTF-8 of the UTF-16 text in `bytes`. A lone surrogate becomes the three bytes that its number would take, so that
/// Utf16FromUtf8 restores every unit; an odd last byte is not looked at.
std::string Utf8FromUtf16(std::string_view bytes, std::endian order);

/// The reverse. A byte that belongs to no character becomes the replacement character.
std::string Utf16FromUtf8(std::string_view text, std::endian order);

} // namespace qmv40
