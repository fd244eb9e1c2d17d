#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40 {

/// The registry's own numbers of the types of values.
enum class RegistryType : std::uint32_t {
    None = 0,
    Text = 1,
    ExpandableText = 2,
    Binary = 3,
    Number = 4,
    TextList = 7
};

/// A stored value: its type (which may be one that RegistryType does not name) and its bytes. Text is in UTF-8, with
/// its terminator if it is stored with one.
struct RegistryValue {
    RegistryType type;
    std::string bytes;
};

/// A line that names a key, or a line below one. Blank lines, comments and lines below a removed key are left out.
struct RegistryLine {
    enum class Kind {
        Key,
        RemovedKey,
        Value,
        RemovedValue,
        Nonsense ///< cannot be understood and is skipped
    };
    Kind kind;
    std::size_t number;                 ///< line number, from 1; the first line of a value on several lines
    std::string content;                ///< the text of the line, without blanks at its ends
    std::string key;                    ///< with its root, without a backslash at the end
    std::string name;                   ///< of a value, also of one that is removed; "" is the key's default value
    std::optional<RegistryValue> value; ///< of a value
};

/// One key in the content of a file in the registry export format: "Windows Registry Editor Version 5.00" (UTF-8, or
/// UTF-16 behind a byte-order mark) or "REGEDIT4".
///
/// Read as the registry editor imports it: later lines override and delete earlier ones, the letter case of keys and
/// value names makes no difference, and a line that cannot be understood is skipped. Only the root HKEY_LOCAL_MACHINE
/// is read. A text value is on one line.
class RegistryKeyText {
public:
    /// `path` is the path below the root. A file that begins with neither of the two format names holds no key.
    RegistryKeyText(const std::string& fileContent, std::string_view path);

    bool IsPresent() const noexcept { return isPresent; }

    /// The value under `name` ("" is the key's default value), or nothing.
    std::optional<RegistryValue> Find(std::string_view name) const;

private:
    std::string text;
    bool hasWideTexts = false; ///< bytes of texts are UTF-16
    bool isPresent = false;
    std::vector<std::size_t> lines; ///< where the lines below the key's headings begin
};

/// All lines of a file, for a report of what is wrong with it. Read by the same rules, also if the file begins with
/// neither of the two format names.
struct RegistryLines {
    bool hasFormat = false; ///< the file begins with one of the two format names
    std::vector<RegistryLine> lines;
};

RegistryLines RegistryLinesIn(const std::string& fileContent);

} // namespace qmv40
