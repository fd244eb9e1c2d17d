#pragma once

#include "platform/Automation.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40::settings {

/// A settings file taken apart with the line of everything, for those who want to know what is wrong with it.
/// It is read as the component and the platform's own import read it: what comes later overrides, letter case of names
/// does not matter, a line that makes no sense is passed over.

/// A value as it is stored: its type (REG_SZ and so on) and its bytes, a text's in UTF-8 with the terminator it has.
struct StoredValue {
    std::string name;
    DWORD type;
    std::string bytes;
    std::optional<std::size_t> line; ///< counted from 1; none where the registry itself holds it
};

/// A line that says something about one key.
struct RegistryLine {
    enum class Kind { Value, Removal, Nonsense };
    Kind kind;
    std::size_t line;
    std::string text;  ///< the line as it stands
    StoredValue value; ///< of a removal the name alone
};

struct RegistryFileKey {
    std::string path; ///< with its root, without a backslash at the end
    bool isRemoval;
    std::size_t line;
    std::vector<RegistryLine> lines;
};

struct RegistryFile {
    bool hasFormat = false; ///< the first line names the format
    std::vector<RegistryFileKey> keys;
};

RegistryFile ParseRegistryFile(std::string_view content);

/// The text of a stored value without its terminator; nothing when it is no text.
std::optional<std::string> TextOf(const StoredValue& value);

/// What kind of value a type is, for people: "a number (dword)".
std::string TypeText(DWORD type);

} // namespace qmv40::settings
