#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40 {

/// Initialisation-profile files: `[section]` lines and `key=value` lines.
/// Names are wide text. They are converted to the thread's ANSI code page on Windows, to UTF-8 elsewhere. With a null
/// name, or one that cannot be converted, no value is read and no entry is written.
///
/// On Windows the platform's own profile functions read and write every entry. There a file name without a folder is
/// looked for in the Windows folder (".\name" in the current folder), and a name of 260 characters or more names no
/// file. On other systems a file name without a folder is looked for in the current folder.

/// Reads a file as it is at one moment, even if another program replaces the file meanwhile. Never waits.
/// On Windows, if the file's name is absolute and this object could open the file, no program can replace it during the
/// life of this object, and no save of this component can write into it. While such a save writes, no entry is found.
/// Another program that writes into the file itself still changes what is read.
class ProfileReader {
public:
    explicit ProfileReader(const wchar_t* fileName);
    ProfileReader(const ProfileReader&) = delete;
    ProfileReader& operator=(const ProfileReader&) = delete;
    ~ProfileReader();

    /// Copies the value of `key` in `section` into `buffer`, cut to fit, with its terminator. A missing file, section
    /// or key gives `defaultText`. Blanks around the value and one matching pair of quotes are removed. Letter case and
    /// outer blanks of section and key do not matter. If several sections or keys have the same name, the first is
    /// used. Section "" is the text before the first section line. A null `defaultText` is empty.
    void Read(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer) const;

private:
    struct State;
    std::unique_ptr<State> state;
};

/// An entry to write. A name without a value was null or could not be converted.
struct ProfileEntry {
    std::optional<std::string> section;
    std::optional<std::string> key;
    std::string text;
};

/// Gathers entries and writes them into one file.
class ProfileWriter {
public:
    explicit ProfileWriter(const wchar_t* fileName) : file(fileName == nullptr ? L"" : fileName) {}

    /// Puts `key=text` into `section` at Commit: replaces the value of the key, or adds the key, its section
    /// and the file.
    void Set(const wchar_t* section, const wchar_t* key, std::string_view text);

    /// Writes the entries into a copy beside the file. The copy replaces the file in one step, with the same access
    /// rights: a process that is killed in the middle leaves all entries or none, and a reader finds all or none.
    ///
    /// If no copy can be made, or if it cannot replace the file (an unwritable folder, a full disk, a link, a mounted
    /// file, a name that is not absolute on Windows), the entries are written into the file itself, one after the
    /// other. The first failure ends this: the entries before it stay, and the failing one is removed again (on Windows
    /// only if the name is absolute).
    ///
    /// Returns false if an entry could not be written. All other content of the file stays, except a UTF-8 byte-order
    /// mark, which Windows would take for the first character of the first line. Waits at most 250 ms in all for a
    /// program that holds the file, and leaves no other file behind. On Windows, if a program holds the file for longer
    /// but lets others write into it, the content of the copy is written into the file in one step, and no load and no
    /// other save sees a part of it. If the program does not let others write, nothing is written.
    bool Commit();

private:
    std::wstring file;
    std::vector<ProfileEntry> entries;
};

} // namespace qmv40
