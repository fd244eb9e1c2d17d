#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace qmv40::text {

/// A kind of file that the tool writes.
struct FileKind {
    std::string name; ///< with its article, for messages: "a settings file"
    /// True for the content of a file of this kind. Such a file may be replaced.
    std::function<bool(std::string_view content)> isContentOf;
};

/// A kind whose files have `mark` in their first line. Every content that is written must have it there.
FileKind KindMarked(std::string name, std::string mark);

/// Throws InputError unless the name is free, or that of an empty file or of a file of this kind. A mistyped name then
/// cannot overwrite a capture or a file of another program.
void RequireNewOrOfKind(const std::string& fileName, const FileKind& kind);

/// Writes the file if RequireNewOrOfKind accepts it. When that fails, the file keeps its content.
void WriteOutput(const std::string& fileName, std::string_view content, const FileKind& kind);

} // namespace qmv40::text
