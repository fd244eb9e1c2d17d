#pragma once

#include <cerrno>
#include <optional>
#include <string>

namespace qmv40 {

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

/// The result of a system call that is made again for as long as a signal interrupts it.
template <typename Call> int Uninterrupted(Call call) noexcept {
    int result = -1;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
}

/// Opens a file without waiting for anything behind the name (a pipe's other end, say); `flags` as for open(2).
FileDescriptor OpenFile(const std::string& name, int flags) noexcept;
/// The same in an open folder; `mode` as for open(2).
FileDescriptor OpenFileIn(const FileDescriptor& folder, const std::string& name, int flags, unsigned mode = 0) noexcept;

/// All bytes of an ordinary file; nothing when it is of another kind, too large, or cannot be read to its end. A file
/// that is being written in place is read again, and given up when it does not settle.
std::optional<std::string> ReadWhole(const FileDescriptor& file);

} // namespace qmv40
