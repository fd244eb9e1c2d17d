#pragma once

#include <optional>
#include <string>

/// Files larger than this are none of ours, and are neither read nor changed.
inline constexpr std::size_t largestFile = 16U << 20;

/// An open file, closed at the end of its scope.
class FileDescriptor {
public:
    explicit FileDescriptor(int openFile) noexcept : number(openFile) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    bool IsOpen() const noexcept { return number >= 0; }
    int Number() const noexcept { return number; }
    /// False when the file system reports only now that something written was lost.
    bool Close() noexcept;

private:
    int number;
};

/// Opens a file without waiting for anything behind the name (a pipe's other end, say); `flags` as for open(2).
FileDescriptor OpenFile(const std::string& name, int flags) noexcept;

/// All bytes of an ordinary file; nothing when it is of another kind, too large, or cannot be read to its end.
std::optional<std::string> ReadWhole(const FileDescriptor& file);
