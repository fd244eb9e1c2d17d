#pragma once

#include <string>
#include <string_view>

namespace qmv40::text {

/// Throws InputError when the name is not that of a file: nothing is there, or a folder.
void RequireFile(const std::string& fileName);

/// All bytes of a file. Throws InputError when it is not there, is a folder or cannot be read.
std::string ReadWholeFile(const std::string& fileName);

/// Makes `content` the whole of the file: whatever fails, the name stands for what it did before or for all of it.
/// Throws InputError when it cannot be written.
void WriteWholeFile(const std::string& fileName, std::string_view content);

} // namespace qmv40::text
