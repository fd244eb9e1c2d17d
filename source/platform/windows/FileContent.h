#pragma once

#include <optional>
#include <string>

namespace qmv40 {

/// The whole content of a file. Nothing if it cannot be read, or if it is larger than any geometry file.
std::optional<std::string> ContentOf(const std::wstring& name);

/// Gives an existing file another content, whole: nobody else can write meanwhile, and a failure takes it back.
bool Overwrite(const std::wstring& name, const std::string& content);

/// Takes away a UTF-8 byte-order mark: the profile functions would not find the section in the line behind it. True
/// also if there is none.
bool RemoveMark(const std::wstring& name);

} // namespace qmv40
