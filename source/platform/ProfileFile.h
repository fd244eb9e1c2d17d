#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40 {

/// Initialisation-profile files: `[section]` lines and `key=value` lines.
/// Names are wide text. They are converted to the thread's ANSI code page on Windows, to UTF-8 elsewhere. A null name,
/// or one that cannot be converted, names nothing: no value is read, and no entry is written.
///
/// On Windows the platform's own profile functions read and write every entry. There a file name without a folder is
/// one in the Windows folder (".\name" is one in the current folder), and a name of 260 characters or more names no
/// file. Elsewhere a file name without a folder is one in the current folder.

/// A file that is read as it is at one moment, whoever replaces it meanwhile. Never waits.
/// On Windows nobody can replace the file while this lives, if its name is an absolute one; a program that writes into
/// the file itself still changes it.
class ProfileReader {
public:
    explicit ProfileReader(const wchar_t* fileName);
    ProfileReader(const ProfileReader&) = delete;
    ProfileReader& operator=(const ProfileReader&) = delete;
    ~ProfileReader();

    /// Copies the value of `key` in `section`, terminated, into `buffer`, cut to fit. A missing file, section or key
    /// gives `defaultText`. Blanks around the value and one matching pair of quotes are removed.
    /// Letter case and outer blanks of section and key do not matter. Of several sections or keys of one name the first
    /// counts. Section "" is what stands before the first section line. A null `defaultText` is empty.
    void Read(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer) const;

private:
    struct State;
    std::unique_ptr<State> state;
};

/// An entry to write. A name that is absent was null or could not be converted.
struct ProfileEntry {
    std::optional<std::string> section;
    std::optional<std::string> key;
    std::string text;
};

/// Gathers entries and writes them into one file.
class ProfileWriter {
public:
    explicit ProfileWriter(const wchar_t* fileName) : file(fileName == nullptr ? L"" : fileName) {}

    /// Puts `key=text` into `section` at Commit: replaces the key where it stands, or adds key, section and file.
    void Set(const wchar_t* section, const wchar_t* key, std::string_view text);

    /// Writes the entries into a copy beside the file, which takes the file's place in one step: whoever is ended in
    /// the middle, or reads meanwhile, finds all entries or none. Access rights stay as they were. Where no such copy
    /// can be made or take the place (an unwritable folder, a full disk, a link, a mounted file, a name that is not
    /// absolute on Windows), writes the entries into the file itself, one after the other. The first one that cannot be
    /// written ends that: those before it stay, nothing of itself does. False when an entry could not be written. All
    /// other content stays; a UTF-8 byte-order mark is taken away, because Windows takes it for the first character of
    /// the first line. Waits at most 250 ms in all for a program that holds the file, and leaves no other file behind.
    /// A file that is held for longer, which only Windows knows, gets the copy's content in one write where its holder
    /// lets others write, and nothing where it does not: a load and another save do not.
    bool Commit();

private:
    std::wstring file;
    std::vector<ProfileEntry> entries;
};

} // namespace qmv40
