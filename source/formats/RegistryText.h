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

/// A stored value: its type (also one that RegistryType does not name) and its bytes, a text's in UTF-8 with the
/// terminator that it has.
struct RegistryValue {
    RegistryType type;
    std::string bytes;
};

/// One key in the content of a file in the registry export format: "Windows Registry Editor Version 5.00" (UTF-8, or
/// UTF-16 behind a byte-order mark) or "REGEDIT4".
///
/// Read as an import would read it: what comes later overrides and deletes what came before, letter case of keys and
/// value names does not matter, and a line that makes no sense is passed over. Only the machine-wide root
/// HKEY_LOCAL_MACHINE is known. A text value stands on one line. Values are looked up in the text where they stand:
/// nothing is prepared for queries that may never come.
class RegistryKeyText {
public:
    /// `path` is below the root. A file that begins with neither of the two names of the format holds no key.
    RegistryKeyText(std::string fileContent, std::string_view path);

    bool IsPresent() const noexcept { return isPresent; }

    /// The value under `name` ("" is the key's default value), or nothing.
    std::optional<RegistryValue> Find(std::string_view name) const;

private:
    struct Lines {
        std::size_t begin;
        std::size_t end;
    };

    void FindKey(std::size_t at, std::string_view path);
    /// What `lines` say last about the value, over what came before them.
    void FindIn(const Lines& lines, std::string_view name, std::optional<RegistryValue>& value) const;

    std::string text;
    bool hasWideTexts = false; ///< bytes of texts are UTF-16
    bool isPresent = false;
    std::vector<Lines> parts; ///< the lines below each of the key's headings
};

/// A line that names a key or stands below one. Blank lines, comments and what stands below a removed key are none.
struct RegistryLine {
    enum class Kind {
        Key,
        RemovedKey,
        Value,
        RemovedValue,
        Nonsense ///< is passed over
    };
    Kind kind;
    std::size_t number;                 ///< counted from 1; of a value on several lines that of the first one
    std::string content;                ///< as it stands, without the blanks around it
    std::string key;                    ///< with its root, without a backslash at the end
    std::string name;                   ///< of a value, also of one that is removed; "" is the key's default value
    std::optional<RegistryValue> value; ///< of a value
};

/// The same text for those who want to know what is wrong with it: read by the same rules, whatever it begins with.
struct RegistryLines {
    bool hasFormat = false; ///< it begins with one of the two names of the format
    std::vector<RegistryLine> lines;
};

RegistryLines RegistryLinesIn(std::string fileContent);

} // namespace qmv40
