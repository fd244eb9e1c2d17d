#include "platform/windows/ProfileCopy.h"

#include "platform/windows/FileContent.h"
#include "platform/windows/FileHandle.h"
#include "platform/windows/NarrowNames.h"

#include <algorithm>
#include <vector>

namespace qmv40 {

namespace {

bool Flush(const std::wstring& name) {
    const FileHandle file(name, GENERIC_WRITE, shareAll);
    return file.IsOpen() && FlushFileBuffers(file.Get()) != 0;
}

/// Whether the file holds the whole text. On a full disk the platform's function can write a part of the text and
/// report success. A text with blanks or quotes at its ends is not compared, because it is read without them.
bool Holds(const std::string& name, const std::string& section, const std::string& key, const std::string& text) {
    constexpr const char* removed = " \t'\"";
    if (text.empty() || text.find_first_of(removed) == 0 || text.find_last_of(removed) == text.size() - 1) return true;
    std::string read(text.size() + 2, '\0');
    read.resize(GetPrivateProfileStringA(section.c_str(), key.c_str(), "", read.data(), static_cast<DWORD>(read.size()),
                                         name.c_str()));
    return read == text;
}

bool WriteEntry(const ProfileEntry& entry, const std::string& name) {
    // Without a key the platform's function removes the section, and without a file it writes win.ini.
    if (!entry.section || !entry.key) return false;
    const std::string& section = *entry.section;
    const std::string& key = *entry.key;
    return WritePrivateProfileStringA(section.c_str(), key.c_str(), entry.text.c_str(), name.c_str()) != 0 &&
           Holds(name, section, key, entry.text);
}

bool Exists(const std::wstring& name) { return GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES; }

/// Writes one entry into the file itself. After a failure it restores the file.
bool WriteInPlace(const ProfileEntry& entry, const std::wstring& file, const std::string& name) {
    if (!IsAbsolute(file)) return WriteEntry(entry, name);
    const bool wasThere = Exists(file);
    const std::optional<std::string> before = ContentOf(file);
    if (RemoveMark(file) && WriteEntry(entry, name)) return true;
    if (!wasThere) DeleteFileW(file.c_str());
    if (before && ContentOf(file) != before) Overwrite(file, *before);
    return false;
}

/// A file beside the target, which it will replace. If it does not, it is removed at the end.
class Copy {
public:
    /// The thread's number and the time make the name unique, because a thread saves one file at a time.
    Copy(std::wstring file, const std::string& narrowFile, WaitLimit& theWaitLimit)
        : target(std::move(file)), waitLimit(theWaitLimit),
          narrow(narrowFile + ".qmv40-" + std::to_string(GetCurrentThreadId()) + "-" +
                 std::to_string(GetTickCount64())),
          name(SeenName(narrow)), exists(name.size() < MAX_PATH && Make()) {}
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;
    ~Copy() {
        if (exists) DeleteFileW(name.c_str());
    }

    /// Whether no copy was made because another program held the file for longer than the wait limit.
    bool IsTargetHeld() const { return isTargetHeld; }

    bool Write(std::span<const ProfileEntry> entries) const {
        const auto isWritten = [&](const ProfileEntry& entry) { return WriteEntry(entry, narrow); };
        return exists && CopyPermissions() && RemoveMark(name) && std::ranges::all_of(entries, isWritten) &&
               Flush(name);
    }

    bool ReplaceTarget() {
        constexpr DWORD how = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        while (MoveFileExW(name.c_str(), target.c_str(), how) == 0)
            if (!IsInUse(GetLastError()) || !waitLimit.Wait()) return false;
        exists = false;
        return true;
    }

    /// For a target that cannot be replaced because another program has it open.
    bool OverwriteTarget() const {
        const std::optional<std::string> content = ContentOf(name);
        return content && Overwrite(target, *content);
    }

private:
    bool Make() {
        if (Exists(target)) {
            DWORD error = CopyTarget();
            while (IsHeldBySomebody(error) && waitLimit.Wait()) error = CopyTarget();
            isTargetHeld = IsHeldBySomebody(error);
            return error == ERROR_SUCCESS;
        }
        return GetLastError() == ERROR_FILE_NOT_FOUND && FileHandle(name, GENERIC_WRITE, 0, CREATE_NEW).IsOpen();
    }

    static bool IsHeldBySomebody(DWORD error) {
        return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
    }

    /// While the file is copied, no other save writes into it.
    DWORD CopyTarget() const {
        const FileHandle source(target, GENERIC_READ, shareAll);
        if (source.IsOpen() && !Claim(ContentRight::toRead, source)) return ERROR_LOCK_VIOLATION;
        return CopyFileW(target.c_str(), name.c_str(), TRUE) != 0 ? ERROR_SUCCESS : GetLastError();
    }

    bool CopyPermissions() const {
        if (!Exists(target)) return true;
        DWORD size = 0;
        GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
        std::vector<char> permissions(size);
        return GetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, permissions.data(), size, &size) != 0 &&
               SetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, permissions.data()) != 0;
    }

    std::wstring target;
    WaitLimit& waitLimit;
    std::string narrow;
    std::wstring name;
    bool isTargetHeld = false;
    bool exists;
};

/// Whether a copy may replace the file: the file does not exist yet, or it may be written, is no link and has one name
/// only. Nothing if another program holds it for longer than the wait limit.
std::optional<bool> IsReplaceable(const std::wstring& file, WaitLimit& waitLimit) {
    const DWORD attributes = GetFileAttributesW(file.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return GetLastError() == ERROR_FILE_NOT_FOUND;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return false;
    FileHandle opened(file, GENERIC_READ | GENERIC_WRITE, shareAll);
    while (!opened.IsOpen() && GetLastError() == ERROR_SHARING_VIOLATION) {
        if (!waitLimit.Wait()) return std::nullopt;
        opened = FileHandle(file, GENERIC_READ | GENERIC_WRITE, shareAll);
    }
    BY_HANDLE_FILE_INFORMATION information{};
    return opened.IsOpen() && GetFileInformationByHandle(opened.Get(), &information) != 0 &&
           information.nNumberOfLinks == 1;
}

/// Whether the file was written. Nothing if no copy can be made, or if the entries cannot be written into it: then they
/// can be written into the file itself, one after the other. That is never done while another program holds the file:
/// it may be a load or a save, which would then read a part of this geometry.
std::optional<bool> WriteByCopy(const std::wstring& file, const std::string& name,
                                std::span<const ProfileEntry> entries, WaitLimit& waitLimit) {
    const std::optional<bool> isReplaceable = IsReplaceable(file, waitLimit);
    if (!isReplaceable) return false;
    if (!*isReplaceable) return std::nullopt;
    Copy copy(file, name, waitLimit);
    if (copy.IsTargetHeld()) return false;
    if (!copy.Write(entries)) return std::nullopt;
    return copy.ReplaceTarget() || copy.OverwriteTarget();
}

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

} // namespace

bool IsAbsolute(const std::wstring& file) {
    if (file.size() < 3) return false;
    return (file[1] == L':' && IsSeparator(file[2])) || (IsSeparator(file[0]) && IsSeparator(file[1]));
}

bool WriteEntries(const std::wstring& file, std::span<const ProfileEntry> entries, WaitLimit& waitLimit) {
    const std::optional<std::string> name = NarrowFileName(file.c_str());
    if (!name) return false;
    if (IsAbsolute(file)) {
        const std::optional<bool> isWritten = WriteByCopy(file, *name, entries, waitLimit);
        if (isWritten) return *isWritten;
    }
    return std::ranges::all_of(entries, [&](const ProfileEntry& entry) { return WriteInPlace(entry, file, *name); });
}

} // namespace qmv40
