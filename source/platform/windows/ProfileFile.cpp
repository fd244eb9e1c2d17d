#include "platform/ProfileFile.h"

#include "platform/Automation.h"

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The name in the thread's code page, passed on as a null pointer when there is none. A character without a
/// counterpart there becomes '?', never a similar one: no file may have such a name, so the call fails instead of
/// reaching another file.
class NarrowName {
public:
    explicit NarrowName(const wchar_t* wide) {
        const int length = Convert(wide, nullptr, 0);
        if (length <= 0) return;
        text.resize(static_cast<std::size_t>(length));
        isThere = Convert(wide, text.data(), length) == length;
    }

    const char* Get() const { return isThere ? text.c_str() : nullptr; }

private:
    static int Convert(const wchar_t* wide, char* narrow, int size) {
        if (wide == nullptr) return 0;
        return WideCharToMultiByte(CP_THREAD_ACP, WC_NO_BEST_FIT_CHARS, wide, -1, narrow, size, nullptr, nullptr);
    }

    std::string text;
    bool isThere = false;
};

// Milliseconds.
constexpr ULONGLONG patience = 2000;
constexpr ULONGLONG littlePatience = 100;
constexpr ULONGLONG patienceInTheQueue = 10000; // many savers on a busy machine

/// Makes `attempt` until it succeeds, as long as it fails because somebody else has the file open. Access is denied for
/// that reason too, but mostly for lasting ones: that is borne for `withDenial` only.
template <typename Attempt> bool Patiently(ULONGLONG withDenial, Attempt attempt, ULONGLONG withSharing = patience) {
    const ULONGLONG start = GetTickCount64();
    while (!attempt()) {
        const DWORD error = GetLastError();
        const ULONGLONG allowed = error == ERROR_SHARING_VIOLATION ? withSharing : withDenial;
        const bool isInUse = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
        if (!isInUse || GetTickCount64() - start >= allowed) return false;
        Sleep(1);
    }
    return true;
}

/// An open file, or none.
class FileHandle {
public:
    FileHandle() = default;
    FileHandle(const char* name, DWORD access, DWORD sharing, DWORD disposition, DWORD flags = FILE_ATTRIBUTE_NORMAL)
        : handle(CreateFileA(name, access, sharing, nullptr, disposition, flags, nullptr)) {}
    FileHandle(FileHandle&& other) noexcept : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(handle, other.handle);
        return *this;
    }
    ~FileHandle() {
        if (IsOpen()) CloseHandle(handle);
    }

    bool IsOpen() const noexcept { return handle != INVALID_HANDLE_VALUE; }
    bool Flush() const noexcept { return IsOpen() && FlushFileBuffers(handle) != 0; }

private:
    HANDLE handle = INVALID_HANDLE_VALUE;
};

/// The profile functions take a longer name for one that is cut off, or do not survive it.
bool IsTooLong(const wchar_t* fileName) { return fileName != nullptr && std::wcslen(fileName) >= MAX_PATH; }

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

/// The profile functions look for any other name in a folder of their own choice.
bool IsAbsolute(const std::string& name) {
    if (name.size() < 3) return false;
    return (name[1] == ':' && IsSeparator(name[2])) || (IsSeparator(name[0]) && IsSeparator(name[1]));
}

constexpr const char* copyEnding = ".qmv40-new";
constexpr const char* lockEnding = ".qmv40-lock"; // the longer one

/// The narrow name, if it is one that every function finds in the same place and that leaves room for our endings.
std::optional<std::string> AbsoluteName(const wchar_t* fileName) {
    const NarrowName narrow(fileName);
    const char* const text = narrow.Get();
    if (text == nullptr || std::wcslen(fileName) + std::strlen(lockEnding) >= MAX_PATH || !IsAbsolute(text))
        return std::nullopt;
    return std::string(text);
}

/// A copy beside the file, which takes the writes and then the file's place. Savers of one file take turns; a saver
/// that is ended leaves a copy behind at most, which the next one overwrites.
class FileBeside {
public:
    explicit FileBeside(std::string file) : target(std::move(file)), name(target + copyEnding) {
        const std::string lockName = target + lockEnding; // gone with its handle, whatever becomes of us
        const auto takeLock = [&] {
            lock = FileHandle(lockName.c_str(), GENERIC_WRITE | DELETE, 0, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE);
            return lock.IsOpen();
        };
        // A lock that is just being let go of is denied.
        isTaken = !Patiently(littlePatience, takeLock, patienceInTheQueue) && GetLastError() == ERROR_SHARING_VIOLATION;
        isUsable = lock.IsOpen() && Prepare();
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;
    ~FileBeside() {
        if (lock.IsOpen()) DeleteFileA(name.c_str());
    }

    bool IsUsable() const noexcept { return isUsable; }
    /// Somebody else is saving, and goes on and on.
    bool IsTaken() const noexcept { return isTaken; }
    const char* Name() const noexcept { return name.c_str(); }

    bool TakePlace() {
        constexpr DWORD everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        if (!FileHandle(Name(), GENERIC_WRITE, everybody, OPEN_EXISTING).Flush()) return false;
        const auto move = [&] {
            return MoveFileExA(Name(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
        };
        // A file that somebody keeps open cannot be replaced (that is denied), but perhaps overwritten.
        return Patiently(patience, move) || CopyFileA(Name(), target.c_str(), FALSE) != 0;
    }

private:
    bool Prepare() {
        const DWORD attributes = GetFileAttributesA(target.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) {
            const bool isNew = GetLastError() == ERROR_FILE_NOT_FOUND;
            return isNew && (DeleteFileA(Name()) != 0 || GetLastError() == ERROR_FILE_NOT_FOUND);
        }
        constexpr DWORD unfit = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
        return (attributes & unfit) == 0 && MayBeWritten() && CopyFileA(target.c_str(), Name(), FALSE) != 0 &&
               CopyPermissions();
    }

    /// Asked for, although the file is replaced: so a file that must not be written is refused.
    bool MayBeWritten() const {
        return Patiently(0, [&] {
            return FileHandle(target.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              OPEN_EXISTING)
                .IsOpen();
        });
    }

    bool CopyPermissions() const {
        DWORD size = 0;
        GetFileSecurityA(target.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
        std::vector<char> permissions(size);
        return GetFileSecurityA(target.c_str(), DACL_SECURITY_INFORMATION, permissions.data(), size, &size) != 0 &&
               SetFileSecurityA(Name(), DACL_SECURITY_INFORMATION, permissions.data()) != 0;
    }

    std::string target;
    std::string name;
    FileHandle lock;
    bool isTaken = false;
    bool isUsable = false;
};

/// What a thread is about to write: the file's name as the caller wrote it, and the file that takes its place.
struct OpenBatch {
    std::wstring name;
    std::optional<FileBeside> beside;
    OpenBatch* outer = nullptr; ///< opened before it
};

thread_local OpenBatch* latestBatch = nullptr;

/// The latest one of `fileName`, or null.
const OpenBatch* FindBatch(const wchar_t* fileName) {
    const OpenBatch* batch = latestBatch;
    while (batch != nullptr && (fileName == nullptr || batch->name != fileName)) batch = batch->outer;
    return batch;
}

} // namespace

void ReadProfileText(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer,
                     const wchar_t* fileName) {
    if (IsTooLong(fileName)) {
        std::snprintf(buffer.data(), buffer.size(), "%s", defaultText == nullptr ? "" : defaultText);
        return;
    }
    GetPrivateProfileStringA(NarrowName(section).Get(), NarrowName(key).Get(), defaultText, buffer.data(),
                             static_cast<DWORD>(buffer.size()), NarrowName(fileName).Get());
}

bool WriteProfileText(const wchar_t* section, const wchar_t* key, const char* text, const wchar_t* fileName) {
    if (IsTooLong(fileName)) return false;
    const NarrowName narrow(fileName);
    const OpenBatch* const batch = FindBatch(fileName);
    // Written into the file now, the values of two savers would mix.
    if (batch != nullptr && batch->beside->IsTaken()) return false;
    return WritePrivateProfileStringA(NarrowName(section).Get(), NarrowName(key).Get(), text,
                                      batch != nullptr ? batch->beside->Name() : narrow.Get()) != 0;
}

struct ProfileSnapshot::State {
    FileHandle file;
};

ProfileSnapshot::ProfileSnapshot(const wchar_t* fileName) : state(std::make_unique<State>()) {
    const std::optional<std::string> name = AbsoluteName(fileName);
    if (!name) return;
    Patiently(0, [&] {
        state->file = FileHandle(name->c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
        return state->file.IsOpen();
    });
}

ProfileSnapshot::~ProfileSnapshot() = default;

struct ProfileBatch::State : OpenBatch {
    bool isHeldBack = false; ///< else each write goes to the file at once
};

ProfileBatch::ProfileBatch(const wchar_t* fileName) : state(std::make_unique<State>()) {
    std::optional<std::string> name = AbsoluteName(fileName);
    if (!name) return;
    state->name = fileName;
    state->beside.emplace(std::move(*name));
    if (!state->beside->IsUsable() && !state->beside->IsTaken()) return;
    state->outer = std::exchange(latestBatch, state.get());
    state->isHeldBack = true;
}

ProfileBatch::~ProfileBatch() {
    if (state->isHeldBack) latestBatch = state->outer;
}

bool ProfileBatch::Commit() { return !state->isHeldBack || (!state->beside->IsTaken() && state->beside->TakePlace()); }
