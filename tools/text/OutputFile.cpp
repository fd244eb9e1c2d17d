#include "tools/text/OutputFile.h"

#include "tools/text/Failures.h"
#include "tools/text/Files.h"

#include <utility>

namespace qmv40::text {

FileKind KindMarked(std::string name, std::string mark) {
    const auto hasMark = [mark = std::move(mark)](std::string_view content) {
        return content.substr(0, content.find_first_of("\r\n")).find(mark) != std::string_view::npos;
    };
    return {std::move(name), hasMark};
}

void RequireNewOrOfKind(const std::string& fileName, const FileKind& kind) {
    if (!IsReplaceable(fileName)) return;
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
