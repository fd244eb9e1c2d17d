#pragma once

#include "platform/Automation.h"

#include <optional>
#include <string>

namespace qmv40 {

/// The platform's conversions of names. A test replaces them.
struct NameConversions {
    decltype(&WideCharToMultiByte) narrow = WideCharToMultiByte;
    decltype(&MultiByteToWideChar) widen = MultiByteToWideChar;
    decltype(&GetShortPathNameW) shortPath = GetShortPathNameW;
};

/// The name for the profile functions, which read names in the system's ANSI code page. The name is converted to the
/// thread's ANSI code page. If the profile functions would read another name from these bytes, it is converted to the
/// system's ANSI code page. Nothing for a null name, and for a name that neither code page can express.
std::optional<std::string> NarrowName(const wchar_t* name, const NameConversions& conversions = {});

/// The same for the name of a file. If neither code page can express it, the file's short (8.3) name is used, if it has
/// one. Nothing for an empty name, and for a name of 260 characters or more: the profile functions would truncate it
/// and open another file.
std::optional<std::string> NarrowFileName(const wchar_t* name, const NameConversions& conversions = {});

/// The name that the profile functions read from narrow bytes.
std::wstring SeenName(const std::string& narrow, const NameConversions& conversions = {});

} // namespace qmv40
