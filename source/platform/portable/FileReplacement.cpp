#include "platform/portable/FileReplacement.h"

#include "platform/portable/FileReading.h"

#include <cerrno>
#include <chrono>
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

/// The folder of a file that is to be replaced. Everything is done through the folder once it is open: a name that is
/// just short enough for the file is short enough for the one beside it.
/// Keeps other writers of the folder out. A lock dies with its holder; one that is held beyond reason (by a program
/// that locks folders for purposes of its own) or that the file system does not offer is done without.
class LockedFolder {
public:
    explicit LockedFolder(const path& folder) : file(OpenToLock(folder)) {
        constexpr auto patience = std::chrono::seconds(2);
        constexpr auto interval = std::chrono::milliseconds(2);
        const auto giveUp = std::chrono::steady_clock::now() + patience;
        while (!TryLock() && errno == EWOULDBLOCK && std::chrono::steady_clock::now() < giveUp)
            std::this_thread::sleep_for(interval);
    }
    LockedFolder(const LockedFolder&) = delete;
    LockedFolder& operator=(const LockedFolder&) = delete;
    // Released by name: a child that the host forked meanwhile shares the open folder, and would keep the lock.
    ~LockedFolder() {
        if (isLocked) ::flock(file.Number(), LOCK_UN);
    }

    const FileDescriptor& File() const noexcept { return file; }
    bool IsLocked() const noexcept { return isLocked; }

    /// Makes a rename in the folder last; not every file system can.
    void Flush() const noexcept { ::fsync(file.Number()); }

private:
    /// A folder that may be written but not listed can be worked in, though neither locked nor flushed.
    static int OpenToLock(const path& folder) noexcept {
        const int opened = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        return opened >= 0 ? opened : ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    }

    bool TryLock() noexcept {
        isLocked = ::flock(file.Number(), LOCK_EX | LOCK_NB) == 0;
        return isLocked;
    }

    FileDescriptor file;
    bool isLocked = false;
};

/// A new file beside the one it is to replace; removed unless it did.
class TemporaryFile {
public:
    TemporaryFile(const LockedFolder& theFolder, mode_t mode) : folder(theFolder), file(Create(mode)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (exists) Remove();
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
        return Uninterrupted([&] { return ::fsync(file.Number()); }) == 0 && file.Close();
    }

    bool Replace(const std::string& target) noexcept {
        const int number = folder.File().Number();
        if (::renameat(number, name.c_str(), number, target.c_str()) != 0) return false;
        exists = false;
        return true;
    }

private:
    int Create(mode_t mode) {
        const int created = folder.IsLocked() ? CreateAsOnlyOne(mode) : -1;
        return created >= 0 ? created : CreateAmongOthers(mode);
    }

    /// Under the lock the one name will do: a file that has it was left behind by a process that was ended, and so
    /// there is never more than one such.
    int CreateAsOnlyOne(mode_t mode) {
        name = ".qmv40.tmp";
        const int created = TryCreate(mode);
        if (created >= 0 || errno != EEXIST) return created;
        Remove();
        return TryCreate(mode);
    }

    /// Without it, a name may be taken: by another thread, or by what a process that had the same number left behind.
    int CreateAmongOthers(mode_t mode) {
        constexpr int mostAttempts = 100;
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            name = ".qmv40-" + std::to_string(::getpid()) + "-" + std::to_string(attempt) + ".tmp";
            const int created = TryCreate(mode);
            if (created >= 0 || errno != EEXIST) return created;
        }
        return -1;
    }

    int TryCreate(mode_t mode) noexcept {
        const int number = folder.File().Number();
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
        const int created = Uninterrupted([&] { return ::openat(number, name.c_str(), flags, mode); });
        exists = created >= 0;
        return created;
    }

    void Remove() noexcept { ::unlinkat(folder.File().Number(), name.c_str(), 0); }

    const LockedFolder& folder;
    std::string name;
    bool exists = false;
    FileDescriptor file;
};

/// The file behind a name that may be a symbolic link, whether or not that file exists yet. Nothing for a name that
/// leads nowhere or could not be opened, too long for one.
std::optional<path> FollowLinks(path name) {
    constexpr int longestChain = 40;
    std::error_code error;
    auto type = std::filesystem::symlink_status(name, error).type();
    for (int links = 0; type == std::filesystem::file_type::symlink; ++links) {
        const path target = std::filesystem::read_symlink(name, error);
        if (error || links == longestChain) return std::nullopt;
        name = name.parent_path() / target;
        type = std::filesystem::symlink_status(name, error).type();
    }
    return type == std::filesystem::file_type::none ? std::nullopt : std::optional(name);
}

path FolderOf(const path& file) { return file.has_parent_path() ? file.parent_path() : path("."); }

/// `original` is null for a file that is not there yet.
bool ReplaceFile(const std::string& target, const LockedFolder& folder, const struct stat* original,
                 std::string_view content) {
    // A new file gets the permissions that the process gives its files; the copy of an old one is nobody else's to
    // read until it has those of the original.
    TemporaryFile file(folder, original == nullptr ? 0666 : 0600);
    if (!file.Exists() || (original != nullptr && !file.TakeAfter(*original))) return false;
    if (!file.Fill(content) || !file.Replace(target)) return false;
    folder.Flush();
    return true;
}

} // namespace

bool RewriteFile(const std::string& name, const std::function<void(std::string& content)>& edit) {
    const std::optional<path> target = FollowLinks(name);
    if (!target || !target->has_filename()) return false;
    const LockedFolder folder(FolderOf(*target));
    if (!folder.File().IsOpen()) return false;

    // Opened for writing too, although it is replaced: so a file that must not be written is refused.
    const std::string fileName = target->filename();
    const FileDescriptor file = OpenFileIn(folder.File(), fileName, O_RDWR);
    const bool isNew = !file.IsOpen();
    if (isNew && errno != ENOENT) return false;
    struct stat status {};
    if (!isNew && ::fstat(file.Number(), &status) != 0) return false;
    const std::optional<std::string> content = isNew ? std::string{} : ReadWhole(file);
    if (!content) return false;

    std::string edited = *content;
    edit(edited);
    return edited == *content || ReplaceFile(fileName, folder, isNew ? nullptr : &status, edited);
}
