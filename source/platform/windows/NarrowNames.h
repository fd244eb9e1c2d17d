#pragma once

#include "platform/Automation.h"

#include <optional>
#include <string>

namespace qmv40 {

/// The platform's conversions of names. A test puts its own in their place.
struct NameConversions {
    decltype(&WideCharToMultiByte) narrow = WideCharToMultiByte;
    decltype(&MultiByteToWideChar) widen = MultiByteToWideChar;
    decltype(&GetShortPathNameW) shortPath = GetShortPathNameW;
};

/// The name as the profile functions are given it: the bytes of the thread's ANSI code page, if the profile functions,
/// which read them by the system's ANSI code page, see the same name in them; else the bytes of the system's code page.
/// Nothing for a null name, and for one that neither code page has all characters of.
std::optional<std::string> NarrowName(const wchar_t* name, const NameConversions& conversions = {});

/// The same for a file's name. A file whose name neither code page has is named by its short (8.3) name, if it has one.
/// Nothing for an empty name, and for one of 260 characters or more: the profile functions cut it off, and reach
/// another file.
std::optional<std::string> NarrowFileName(const wchar_t* name, const NameConversions& conversions = {});

/// What the profile functions see in a narrow name.
std::wstring SeenName(const std::string& narrow, const NameConversions& conversions = {});

} // namespace qmv40
