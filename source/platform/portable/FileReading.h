#pragma once

#include <cerrno>
#include <optional>
#include <string>

namespace qmv40 {

/// An open file, closed at the end of its scope.
class FileDescriptor {
public:
    explicit FileDescriptor(int openFile) noexcept : number(openFile) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    bool IsOpen() const noexcept { return number >= 0; }
    int Number() const noexcept { return number; }
    /// False if the file system reports now that written data were lost.
    bool Close() noexcept;

private:
    int number;
};

/// Repeats a system call until no signal interrupts it, and returns its result.
template <typename Call> auto Uninterrupted(Call call) noexcept {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

/// Opens a file and never waits, even if the name is that of a pipe. `flags` as for open(2).
FileDescriptor OpenFile(const std::string& name, int flags) noexcept;
/// The same in an open folder; `mode` as for open(2).
FileDescriptor OpenFileIn(const FileDescriptor& folder, const std::string& name, int flags, unsigned mode = 0) noexcept;

/// All bytes of a regular file. Nothing if it is of another kind, larger than 16 MiB, or cannot be read to its end. A
/// file that changes during the reading is read again; it is read at most ten times in all.
std::optional<std::string> ReadWhole(const FileDescriptor& file);

} // namespace qmv40
