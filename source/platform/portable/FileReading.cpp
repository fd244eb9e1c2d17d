#include "platform/portable/FileReading.h"

#include "formats/EncodedText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace qmv40 {

FileDescriptor::~FileDescriptor() { Close(); }

bool FileDescriptor::Close() noexcept {
    // After EINTR the descriptor is closed too.
    return !IsOpen() || ::close(std::exchange(number, -1)) == 0 || errno == EINTR;
}

FileDescriptor OpenFile(const std::string& name, int flags) noexcept {
    return OpenFileIn(FileDescriptor(-1), name, flags);
}

FileDescriptor OpenFileIn(const FileDescriptor& folder, const std::string& name, int flags, unsigned mode) noexcept {
    const int from = folder.IsOpen() ? folder.Number() : AT_FDCWD;
    flags |= O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    return FileDescriptor{Uninterrupted([&] { return ::openat(from, name.c_str(), flags, mode); })};
}

namespace {

/// Reads a file whose status was `before`. Returns nothing if its size or time has changed since then.
std::optional<std::string> ReadSettled(const FileDescriptor& file, const struct stat& before) {
    std::string content(static_cast<std::size_t>(before.st_size) + 1, '\0'); // one more, to see the end of the file
    std::size_t length = 0;
    while (length < content.size()) {
        const auto at = static_cast<off_t>(length);
        const ssize_t count =
            Uninterrupted([&] { return ::pread(file.Number(), content.data() + length, content.size() - length, at); });
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        length += static_cast<std::size_t>(count);
    }
    struct stat after {};
    if (length + 1 != content.size() || ::fstat(file.Number(), &after) != 0) return std::nullopt;
    const bool isSame = after.st_size == before.st_size && after.st_mtim.tv_sec == before.st_mtim.tv_sec &&
                        after.st_mtim.tv_nsec == before.st_mtim.tv_nsec;
    if (!isSame) return std::nullopt;
    content.resize(length);
    return content;
}

} // namespace

std::optional<std::string> ReadWhole(const FileDescriptor& file) {
    constexpr int mostAttempts = 10;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        struct stat status {};
        if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
        if (static_cast<std::size_t>(status.st_size) > largestFile) return std::nullopt;
        if (auto content = ReadSettled(file, status)) return content;
    }
    return std::nullopt;
}

} // namespace qmv40
