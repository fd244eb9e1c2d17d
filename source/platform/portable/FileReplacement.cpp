#include "platform/portable/FileReplacement.h"

#include "platform/portable/FileReading.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <linux/limits.h>
#include <map>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace qmv40 {

namespace {

using std::filesystem::path;

/// Writes `bytes` at `offset`.
bool WriteAt(const FileDescriptor& file, std::string_view bytes, std::size_t offset) noexcept {
    while (!bytes.empty()) {
        const ssize_t count = Uninterrupted(
            [&] { return ::pwrite(file.Number(), bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += static_cast<std::size_t>(count);
    }
    return true;
}

bool Flush(const FileDescriptor& file) noexcept {
    return Uninterrupted([&] { return ::fsync(file.Number()); }) == 0;
}

/// Names and values of extended attributes. A value that cannot be read is missing.
using Attributes = std::map<std::string, std::optional<std::string>>;

/// The extended attributes of a file; nothing when they cannot be listed. An access control list is one of them.
std::optional<Attributes> AttributesOf(const FileDescriptor& file) {
    std::string names(XATTR_LIST_MAX, '\0');
    const ssize_t length = ::flistxattr(file.Number(), names.data(), names.size());
    if (length < 0 && errno != ENOTSUP) return std::nullopt;
    names.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    Attributes attributes;
    for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
        const char* const name = names.c_str() + at;
        std::string value(XATTR_SIZE_MAX, '\0');
        const ssize_t size = ::fgetxattr(file.Number(), name, value.data(), value.size());
        value.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        attributes[name] = size < 0 ? std::nullopt : std::optional(std::move(value));
    }
    return attributes;
}

/// Gives `to` the extended attributes of `from` and no others: a folder can give its new files an access control list.
/// An attribute is set only if it differs: setting an equal security label often fails for lack of rights.
bool CopyAttributes(const FileDescriptor& from, const FileDescriptor& to) {
    const std::optional<Attributes> wanted = AttributesOf(from);
    std::optional<Attributes> given = AttributesOf(to);
    if (!wanted || !given) return false;
    for (const auto& [name, value] : *given)
        if (!wanted->contains(name) && ::fremovexattr(to.Number(), name.c_str()) != 0) return false;
    return std::ranges::all_of(*wanted, [&](const auto& attribute) {
        const auto& [name, value] = attribute;
        return value && ((*given)[name] == value ||
                         ::fsetxattr(to.Number(), name.c_str(), value->data(), value->size(), 0) == 0);
    });
}

/// A new file, in the folder of the file that it will replace. If the file system allows it (O_TMPFILE), it gets its
/// name only when it is complete, so that a process that is killed before leaves no file behind.
class Copy {
public:
    /// Only the owner may read the copy of an existing file until the copy has the permissions of that file.
    Copy(const FileDescriptor& theFolder, bool isOfNewFile)
        : folder(theFolder), file(Create(isOfNewFile ? 0666 : 0600)) {}
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;
    ~Copy() {
        if (hasName) ::unlinkat(folder.Number(), name.c_str(), 0);
    }

    /// Copies the owner, the permissions and the extended attributes of `original`. The owner comes first: a change of
    /// the owner can remove permissions.
    bool CopyOwnerAndRights(const FileDescriptor& original) {
        struct stat status {};
        return file.IsOpen() && ::fstat(original.Number(), &status) == 0 &&
               ::fchown(file.Number(), status.st_uid, status.st_gid) == 0 && CopyAttributes(original, file) &&
               ::fchmod(file.Number(), status.st_mode & 07777U) == 0;
    }

    bool Fill(std::string_view content) noexcept { return file.IsOpen() && WriteAt(file, content, 0) && Flush(file); }

    /// Renames the copy to `target`, in one step. Fails if `target` is a mounted file.
    bool Replace(const std::string& target) {
        // A file system without O_TMPFILE may report lost data only when the file is closed.
        const bool isReady = hasName ? file.Close() : GiveName();
        const bool isMoved = isReady && ::renameat(folder.Number(), name.c_str(), folder.Number(), target.c_str()) == 0;
        if (isMoved) hasName = false;
        return isMoved;
    }

private:
    int Create(mode_t mode) {
        constexpr int flags = O_WRONLY | O_CLOEXEC;
        const int nameless = Uninterrupted([&] { return ::openat(folder.Number(), ".", flags | O_TMPFILE, mode); });
        if (nameless >= 0) return nameless;
        int created = -1;
        hasName = WithUniqueName([&] {
            created =
                Uninterrupted([&] { return ::openat(folder.Number(), name.c_str(), flags | O_CREAT | O_EXCL, mode); });
            return created >= 0;
        });
        return created;
    }

    bool GiveName() {
        const std::string nameless = "/proc/self/fd/" + std::to_string(file.Number());
        return hasName = WithUniqueName([&] {
                   return ::linkat(AT_FDCWD, nameless.c_str(), folder.Number(), name.c_str(), AT_SYMLINK_FOLLOW) == 0;
               });
    }

    /// The name is short, so that a file with a name of the largest length can have a copy. It must be unique: another
    /// thread can make a copy at the same time, and a killed process can have left one behind.
    template <typename Attempt> bool WithUniqueName(Attempt attempt) {
        constexpr int mostAttempts = 100;
        for (int i = 0; i < mostAttempts; ++i) {
            name = ".qmv40-" + std::to_string(::getpid()) + "-" + std::to_string(i) + ".tmp";
            if (attempt()) return true;
            if (errno != EEXIST) return false;
        }
        return false;
    }

    const FileDescriptor& folder;
    std::string name;
    bool hasName = false;
    FileDescriptor file;
};

/// O_PATH opens a folder that may be written but not listed. Such a folder cannot be flushed.
FileDescriptor OpenFolder(const path& file) {
    const path folder = file.has_parent_path() ? file.parent_path() : path(".");
    const int opened = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    return FileDescriptor(opened >= 0 ? opened : ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

/// True for a file with two or more names. A file that another save has replaced since it was opened has none.
bool HasOtherNames(const FileDescriptor& file) noexcept {
    struct stat status {};
    return ::fstat(file.Number(), &status) != 0 || status.st_nlink > 1;
}

bool EditByCopy(const path& name, const std::vector<FileEdit>& edits) {
    const FileDescriptor folder = OpenFolder(name);
    const std::string fileName = name.filename();
    if (!folder.IsOpen() || fileName.empty()) return false;
    // Opened for writing too, so that a file without write permission is refused. A symbolic link, or a file with
    // several names, is not replaced.
    const FileDescriptor file = OpenFileIn(folder, fileName, O_RDWR | O_NOFOLLOW);
    const bool isNew = !file.IsOpen() && errno == ENOENT;
    const std::optional<std::string> content = isNew ? std::string() : ReadWhole(file);
    if (!content || (!isNew && HasOtherNames(file))) return false;

    std::string edited = *content;
    for (const FileEdit& edit : edits) edit(edited);
    if (edited == *content) return true;
    Copy copy(folder, isNew);
    if (!isNew && !copy.CopyOwnerAndRights(file)) return false;
    if (!copy.Fill(edited) || !copy.Replace(fileName)) return false;
    Flush(folder); // some file systems cannot; the file is replaced in any case
    return true;
}

/// Replaces the content `before` by `content`. After a failure it writes `before` again.
bool Overwrite(const FileDescriptor& file, std::string_view before, std::string_view content) noexcept {
    const auto sizeTo = [&](std::size_t size) {
        return Uninterrupted([&] { return ::ftruncate(file.Number(), static_cast<off_t>(size)); }) == 0;
    };
    // Only the part that differs is written: then a full disk or a limit of the file size can affect that part alone.
    const auto [same, other] = std::ranges::mismatch(before, content);
    const auto begin = static_cast<std::size_t>(same - before.begin());
    auto changed = content.substr(begin);
    auto original = before.substr(begin);
    while (before.size() == content.size() && !changed.empty() && changed.back() == original.back()) {
        changed.remove_suffix(1);
        original.remove_suffix(1);
    }
    if (WriteAt(file, changed, begin) && (content.size() >= before.size() || sizeTo(content.size())) && Flush(file))
        return true;
    WriteAt(file, original, begin);
    sizeTo(before.size());
    return false;
}

bool EditInPlace(const FileDescriptor& file, const std::vector<FileEdit>& edits) {
    return std::ranges::all_of(edits, [&](const FileEdit& edit) {
        const std::optional<std::string> before = ReadWhole(file);
        std::string content = before.value_or("");
        edit(content);
        return before && Overwrite(file, *before, content);
    });
}

bool EditInPlace(const std::string& name, const std::vector<FileEdit>& edits) {
    const FileDescriptor existing = OpenFile(name, O_RDWR);
    if (existing.IsOpen() || errno != ENOENT) return EditInPlace(existing, edits);
    const FileDescriptor created = OpenFileIn(FileDescriptor(-1), name, O_RDWR | O_CREAT, 0666);
    const bool areEdited = EditInPlace(created, edits);
    struct stat status {};
    if (!areEdited && created.IsOpen() && ::fstat(created.Number(), &status) == 0 && status.st_size == 0) {
        std::error_code ignored; // if the name is a link, its target, which did not exist before, is removed
        std::filesystem::remove(std::filesystem::canonical(name, ignored), ignored);
    }
    return areEdited;
}

} // namespace

bool EditFile(const std::string& name, const std::vector<FileEdit>& edits) {
    // A longer name opens no file, but EditByCopy could make one, because it opens the folder first.
    return name.size() < PATH_MAX && (EditByCopy(name, edits) || EditInPlace(name, edits));
}

} // namespace qmv40
