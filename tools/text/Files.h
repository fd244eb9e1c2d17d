#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qmv40::text {

/// Throws InputError when there is no such file, or a folder of that name.
void RequireFile(const std::string& fileName);

/// True when there is a file of this name. Throws InputError for a folder, and for a device, which must not be replaced
/// because other programs could then not use it.
bool IsReplaceable(const std::string& fileName);

/// All bytes of a file. Throws InputError when it is not there, is a folder or cannot be read.
std::string ReadWholeFile(const std::string& fileName);

/// Replaces the content of the file, or creates it. Throws InputError when it cannot be written. The file then has its
/// old content or the complete new one.
void WriteWholeFile(const std::string& fileName, std::string_view content);

/// The name of a temporary file: a new name that begins with `name`. The destructor removes the file if it is there.
class PassingFile {
public:
    explicit PassingFile(std::filesystem::path name);
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile();

    const std::filesystem::path& Path() const { return path; }

private:
    std::filesystem::path path;
};

} // namespace qmv40::text
