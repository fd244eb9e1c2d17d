#pragma once

#include <memory>
#include <span>

/// Initialisation-profile files: `[section]` lines and `key=value` lines.
/// Names are wide text and are converted to the file system's narrow encoding (the thread's ANSI code page on Windows,
/// UTF-8 elsewhere). A null name, or one that cannot be converted, counts as null.
///
/// On Windows both calls are the platform's own, with what that brings: a file name without a folder is one in the
/// Windows folder (".\name" is one in the current folder), a null one is win.ini, and reading with a null section or
/// key lists names. Elsewhere a file name without a folder is one in the current folder, and a null file, section or
/// key holds no value to read. A file name of 260 characters or more (Windows) or that the system does not take names
/// no file.

/// Copies the value of `key` in `section`, terminated, into `buffer`, cut to fit; a missing file, section or key gives
/// `defaultText`. Blanks around the value and one matching pair of quotes are removed.
/// Letter case and outer blanks of section and key do not matter. Of several sections or keys of one name the first
/// counts. Section "" is what stands before the first section line. A null `defaultText` is empty.
void ReadProfileText(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer,
                     const wchar_t* fileName);

/// Puts `key=text` into `section`, replacing the key where it stands or adding key, section and file as needed; all
/// other content stays. A null `text` removes the key, a null `key` the whole section; removing what is not there
/// succeeds. False when the file could not be written, or `section` or `fileName` is null.
/// Away from Windows every other byte of the file stays as it is, and the file is replaced whole or not at all, so that
/// a crash or a full disk leaves the old content or the new.
bool WriteProfileText(const wchar_t* section, const wchar_t* key, const char* text, const wchar_t* fileName);

/// Several reads of one file as one. While one lives, what the calling thread reads from the file of that name is what
/// it held when this was made, whoever replaces it meanwhile. On Windows nobody can change the file meanwhile, unless
/// somebody had it open for writing before or its name is not an absolute one.
class ProfileSnapshot {
public:
    explicit ProfileSnapshot(const wchar_t* fileName);
    ProfileSnapshot(const ProfileSnapshot&) = delete;
    ProfileSnapshot& operator=(const ProfileSnapshot&) = delete;
    ~ProfileSnapshot();

private:
    struct State;
    std::unique_ptr<State> state;
};

/// Several writes to one file as one. While one lives, what the calling thread writes to the file of that name is held
/// back, and reaches the file at Commit: all of it, in one replacement, or nothing. Without a Commit nothing does.
/// On Windows that takes an absolute name, which is no link's, and a folder where a second file can be made; for any
/// other each write goes to the file at once, as without this.
class ProfileBatch {
public:
    explicit ProfileBatch(const wchar_t* fileName);
    ProfileBatch(const ProfileBatch&) = delete;
    ProfileBatch& operator=(const ProfileBatch&) = delete;
    ~ProfileBatch();

    /// False when the file could not be written.
    bool Commit();

private:
    struct State;
    std::unique_ptr<State> state;
};
