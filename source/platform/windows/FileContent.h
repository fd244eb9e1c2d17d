#pragma once

#include "platform/windows/FileHandle.h"

#include <optional>
#include <string>

namespace qmv40 {

/// The whole content of a file. Nothing if it cannot be read, or if it is larger than any geometry file.
std::optional<std::string> ContentOf(const std::wstring& name);

/// The right to read a file's content, or to write it, among loads and saves of this component: several can read, or
/// one can write. It is held until the file is closed. False if it is not free; nobody waits for it. It is a lock on a
/// byte far behind the content, so that it does not disturb other programs. Where a disk has no locks, it is free.
enum class ContentRight : DWORD { toRead = 0, toWrite = LOCKFILE_EXCLUSIVE_LOCK };
bool Claim(ContentRight right, const FileHandle& file);

/// Gives an existing file another content, whole: nobody else can write meanwhile, no load reads meanwhile, and a
/// failure takes it back.
bool Overwrite(const std::wstring& name, const std::string& content);

/// Takes away a UTF-8 byte-order mark: the profile functions would not find the section in the line behind it. True
/// also if there is none.
bool RemoveMark(const std::wstring& name);

} // namespace qmv40
