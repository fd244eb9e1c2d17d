#include "tools/text/Files.h"

#include "tools/text/Failures.h"
#include "tools/text/Text.h"

#include <fstream>
#include <random>
#include <sstream>
#include <utility>

namespace qmv40::text {

namespace {

/// The new file gets the permissions of the file that it will replace.
bool Fill(const std::filesystem::path& name, std::string_view content, const std::filesystem::file_status& original) {
    std::ofstream file(name, std::ios::binary);
    std::error_code ignored;
    if (std::filesystem::exists(original)) std::filesystem::permissions(name, original.permissions(), ignored);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    return !file.fail();
}

} // namespace

void RequireFile(const std::string& fileName) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(PathOf(fileName), ignored);
    if (!std::filesystem::exists(status)) throw InputError{fileName, {}, "no such file"};
    if (std::filesystem::is_directory(status)) throw InputError{fileName, {}, "is a folder"};
}

bool IsReplaceable(const std::string& fileName) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(PathOf(fileName), ignored);
    if (std::filesystem::is_directory(status)) throw InputError{fileName, {}, "is a folder"};
    if (!std::filesystem::exists(status)) return false;
    if (!std::filesystem::is_regular_file(status)) throw InputError{fileName, {}, "is not an ordinary file"};
    return true;
}

std::string ReadWholeFile(const std::string& fileName) {
    RequireFile(fileName);
    const std::filesystem::path path = PathOf(fileName);
    std::error_code ignored;
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    // operator<< sets the failure bit of `content` when the file is empty, and a file may be empty.
    const bool isEmpty = std::filesystem::file_size(path, ignored) == 0;
    if (!file || (!content && !isEmpty)) throw InputError{fileName, {}, "cannot be read"};
    return content.str();
}

void WriteWholeFile(const std::string& fileName, std::string_view content) {
    IsReplaceable(fileName);
    std::error_code error;
    // The file to which a symbolic link leads is replaced, not the link.
    std::filesystem::path target = std::filesystem::weakly_canonical(PathOf(fileName), error);
    if (error) target = PathOf(fileName);
    const PassingFile file(target);
    const bool isFilled = Fill(file.Path(), content, std::filesystem::status(target, error));
    if (isFilled) std::filesystem::rename(file.Path(), target, error);
    if (!isFilled || error) throw InputError{fileName, {}, "cannot be written"};
}

PassingFile::PassingFile(std::filesystem::path name) : path(std::move(name)) {
    path += "." + std::to_string(std::random_device{}()) + ".tmp";
}

PassingFile::~PassingFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

} // namespace qmv40::text
