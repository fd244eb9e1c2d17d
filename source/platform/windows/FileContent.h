#pragma once

#include "platform/windows/FileHandle.h"

#include <optional>
#include <string>

namespace qmv40 {

/// The whole content of a file. Nothing if it cannot be read, or if it is larger than any geometry file.
std::optional<std::string> ContentOf(const std::wstring& name);

/// The right to read a file's content, or to write it, among loads and saves of this component: several can read, or
/// one can write. It is held until the file is closed. False, at once, if it is not free. It is a lock on a byte far
/// behind the content, so that it does not disturb other programs. On a disk without locks it is always true.
enum class ContentRight : DWORD { toRead = 0, toWrite = LOCKFILE_EXCLUSIVE_LOCK };
bool Claim(ContentRight right, const FileHandle& file);

/// Replaces the whole content of an existing file. Meanwhile no other program can write and no load reads. After a
/// failure the old content is written again.
bool Overwrite(const std::wstring& name, const std::string& content);

/// Removes a UTF-8 byte-order mark, because the profile functions would not find a section in the first line. Also true
/// if there is no mark.
bool RemoveMark(const std::wstring& name);

} // namespace qmv40
