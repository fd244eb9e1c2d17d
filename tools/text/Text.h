#pragma once

#include <filesystem>
#include <string>

namespace qmv40::text {

/// Conversion of file names: in the tool they are UTF-8 on every platform, the file system takes paths. WideText.h
/// converts the component's wide texts.

std::filesystem::path PathOf(const std::string& utf8Name);
std::string Utf8Name(const std::filesystem::path& path);

} // namespace qmv40::text
