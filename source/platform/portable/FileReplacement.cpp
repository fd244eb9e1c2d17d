#include "platform/portable/FileReplacement.h"

#include "platform/portable/FileReading.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using std::filesystem::path;

/// Keeps other writers of the folder out. A lock dies with its holder; one that is held beyond reason (by a program
/// that locks folders for purposes of its own) or that the file system does not offer is done without.
class FolderLock {
public:
    explicit FolderLock(const path& folder) : file(OpenFile(folder, O_RDONLY | O_DIRECTORY)) {
        constexpr auto patience = std::chrono::seconds(2);
        constexpr auto interval = std::chrono::milliseconds(2);
        const auto giveUp = std::chrono::steady_clock::now() + patience;
        while (!TryLock() && errno == EWOULDBLOCK && std::chrono::steady_clock::now() < giveUp)
            std::this_thread::sleep_for(interval);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    // Released by name: a child that the host forked meanwhile shares the open folder, and would keep the lock.
    ~FolderLock() {
        if (file.IsOpen()) ::flock(file.Number(), LOCK_UN);
    }

    /// Makes a rename in the folder last; not every file system can.
    void Flush() const noexcept {
        if (file.IsOpen()) ::fsync(file.Number());
    }

private:
    bool TryLock() noexcept { return !file.IsOpen() || ::flock(file.Number(), LOCK_EX | LOCK_NB) == 0; }

    FileDescriptor file;
};

/// A new file beside the one it is to replace; removed unless it did.
class TemporaryFile {
public:
    TemporaryFile(const path& folder, mode_t mode) : file(Create(folder, mode)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (exists) ::unlink(name.c_str());
    }

    bool Exists() const noexcept { return exists; }

    /// Owner first: changing it may take permissions away.
    bool TakeAfter(const struct stat& original) noexcept {
        [[maybe_unused]] const bool isOwnerKept = ::fchown(file.Number(), original.st_uid, original.st_gid) == 0 ||
                                                  ::fchown(file.Number(), static_cast<uid_t>(-1), original.st_gid) == 0;
        return ::fchmod(file.Number(), original.st_mode & 07777U) == 0;
    }

    bool Fill(std::string_view content) noexcept {
        while (!content.empty()) {
            const ssize_t count = ::write(file.Number(), content.data(), content.size());
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) return false;
            content.remove_prefix(static_cast<std::size_t>(count));
        }
        return ::fsync(file.Number()) == 0 && file.Close();
    }

    bool Replace(const path& target) noexcept {
        if (std::rename(name.c_str(), target.c_str()) != 0) return false;
        exists = false;
        return true;
    }

private:
    /// A name may be taken: by another thread, or by what a process that had the same number left behind when it was
    /// ended.
    int Create(const path& folder, mode_t mode) {
        constexpr int mostAttempts = 100;
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            name = folder / (".qmv40-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp");
            const int created = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            exists = created >= 0;
            if (exists || errno != EEXIST) return created;
        }
        return -1;
    }

    std::string name;
    bool exists = false;
    FileDescriptor file;
};

/// The file behind a name that may be a symbolic link, whether or not that file exists yet.
std::optional<path> FollowLinks(path name) {
    constexpr int longestChain = 40;
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(name, error); ++links) {
        const path target = std::filesystem::read_symlink(name, error);
        if (error || links == longestChain) return std::nullopt;
        name = name.parent_path() / target;
    }
    return name;
}

path FolderOf(const path& file) { return file.has_parent_path() ? file.parent_path() : path("."); }

/// `original` is null for a file that is not there yet.
bool ReplaceFile(const path& target, const FolderLock& folder, const struct stat* original, std::string_view content) {
    // A new file gets the permissions that the process gives its files; the copy of an old one is nobody else's to
    // read until it has those of the original.
    TemporaryFile file(FolderOf(target), original == nullptr ? 0666 : 0600);
    if (!file.Exists() || (original != nullptr && !file.TakeAfter(*original))) return false;
    if (!file.Fill(content) || !file.Replace(target)) return false;
    folder.Flush();
    return true;
}

} // namespace

bool RewriteFile(const std::string& name, const std::function<void(std::string& content)>& edit) {
    const std::optional<path> target = FollowLinks(name);
    std::error_code error;
    if (!target || !target->has_filename() || !std::filesystem::is_directory(FolderOf(*target), error)) return false;
    const FolderLock folder(FolderOf(*target));

    // Opened for writing too, although it is replaced: so a file that must not be written is refused.
    const FileDescriptor file = OpenFile(*target, O_RDWR);
    const bool isNew = !file.IsOpen();
    if (isNew && errno != ENOENT) return false;
    struct stat status {};
    if (!isNew && ::fstat(file.Number(), &status) != 0) return false;
    const std::optional<std::string> content = isNew ? std::string{} : ReadWhole(file);
    if (!content) return false;

    std::string edited = *content;
    edit(edited);
    return edited == *content || ReplaceFile(*target, folder, isNew ? nullptr : &status, edited);
}
