#pragma once

#include <filesystem>
#include <string>

namespace qmv40::text {

/// File names as the tool has them, in UTF-8 on every platform, and as the file system takes them. WideText.h converts
/// the component's wide texts.

std::filesystem::path PathOf(const std::string& utf8Name);
std::string Utf8Name(const std::filesystem::path& path);

} // namespace qmv40::text
