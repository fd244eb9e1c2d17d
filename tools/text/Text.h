#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qmv40::text {

/// The tool's own texts are UTF-8 on every platform; Platform.h turns the component's wide ones into it.

std::filesystem::path PathOf(const std::string& utf8Name);
std::string Utf8Name(const std::filesystem::path& path);

/// Without blanks and tabulators at either end.
std::string_view Trimmed(std::string_view text);

/// Equal but for the case of the letters A to Z.
bool SameName(std::string_view left, std::string_view right);

/// The text of a file's content in UTF-8: a byte-order mark says how it is written, without one it is taken as it is.
std::string DecodedText(std::string_view content);

enum class ByteOrder { LittleEndian, BigEndian };
/// What is no character becomes the replacement character; an odd last byte is taken for half a unit.
std::string Utf8FromUtf16(std::string_view bytes, ByteOrder order);

} // namespace qmv40::text
