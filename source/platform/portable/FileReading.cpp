#include "platform/portable/FileReading.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

FileDescriptor::~FileDescriptor() { Close(); }

bool FileDescriptor::Close() noexcept { return !IsOpen() || ::close(std::exchange(number, -1)) == 0; }

FileDescriptor OpenFile(const std::string& name, int flags) noexcept {
    return FileDescriptor{::open(name.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
}

std::optional<std::string> ReadWhole(const FileDescriptor& file) {
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const auto expected = static_cast<std::size_t>(status.st_size);
    if (expected > largestFile) return std::nullopt;

    std::string content(expected + 1, '\0'); // one more, to see the end of the file
    std::size_t length = 0;
    while (length < content.size()) {
        const ssize_t count = ::read(file.Number(), content.data() + length, content.size() - length);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        length += static_cast<std::size_t>(count);
    }
    if (length != expected) return std::nullopt; // somebody is writing it at this moment
    content.resize(length);
    return content;
}
