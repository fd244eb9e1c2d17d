#include "tools/text/OutputFile.h"

#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"

#include <utility>

namespace qmv40::text {

FileKind KindMarked(std::string name, std::string mark) {
    const auto hasMark = [mark = std::move(mark)](std::string_view content) {
        return content.substr(0, content.find_first_of("\r\n")).find(mark) != std::string_view::npos;
    };
    return {std::move(name), hasMark};
}

void RequireNewOrOfKind(const std::string& fileName, const FileKind& kind) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(PathOf(fileName), ignored);
    if (!std::filesystem::exists(status)) return;
    if (std::filesystem::is_directory(status)) throw InputError{fileName, {}, "is a folder"};
    // A device must not be replaced: other programs could then not use it.
    if (!std::filesystem::is_regular_file(status)) throw InputError{fileName, {}, "is not an ordinary file"};
    const std::string content = ReadWholeFile(fileName);
    if (content.empty() || kind.isContentOf(content)) return;
    throw InputError{
        fileName, {}, "is there and is not " + kind.name + ": give another name, or remove the file first"};
}

void WriteOutput(const std::string& fileName, std::string_view content, const FileKind& kind) {
    RequireNewOrOfKind(fileName, kind);
    WriteWholeFile(fileName, content);
}

} // namespace qmv40::text
