#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace qmv40::text {

/// A kind of file that the tool writes.
struct FileKind {
    std::string name; ///< with its article, for messages: "a settings file"
    /// Whether a file with this content is of the kind: then it may be replaced.
    std::function<bool(std::string_view content)> isContentOf;
};

/// A kind that is known by its first line, in which `mark` stands. Every content that is written must have it there.
FileKind KindMarked(std::string name, std::string mark);

/// Throws InputError when the name stands for something else than a new file, an empty one, or one of the kind. A slip
/// in a file name then costs nobody a capture or another program's file.
void RequireNewOrOfKind(const std::string& fileName, const FileKind& kind);

/// Makes `content` the whole of a file that RequireNewOrOfKind accepts. When that fails, the file is as it was.
void WriteOutput(const std::string& fileName, std::string_view content, const FileKind& kind);

} // namespace qmv40::text
