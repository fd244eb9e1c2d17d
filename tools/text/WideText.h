#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// The component's texts are wide, the tool's are UTF-8. The platforms differ in what a wide text is.

namespace qmv40::text {

std::string ToUtf8(std::wstring_view wide);

/// The wide form of a file name under which the component finds the same file. Throws InputError when there is none.
std::wstring FileNameForComponent(const std::filesystem::path& path);

} // namespace qmv40::text
