#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Conversion between the component's wide texts and the tool's UTF-8. wchar_t is UTF-16 on Windows and UTF-32
/// elsewhere.

namespace qmv40::text {

std::string ToUtf8(std::wstring_view wide);

/// The wide form of a file name under which the component finds the same file. Throws InputError when there is none.
std::wstring FileNameForComponent(const std::filesystem::path& path);

} // namespace qmv40::text
