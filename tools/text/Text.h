#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace qmv40::text {

/// The texts with the separator between each two of them.
std::string Joined(std::span<const std::string> texts, const std::string& separator);

/// The text with each character that `words` has as a key replaced by its word.
std::string Replaced(std::string_view text, std::span<const std::pair<char, std::string_view>> words);

// Conversion of file names: in the tool they are UTF-8 on every platform, the file system takes paths. WideText.h
// converts the component's wide texts.

std::filesystem::path PathOf(const std::string& utf8Name);
std::string Utf8Name(const std::filesystem::path& path);

} // namespace qmv40::text
