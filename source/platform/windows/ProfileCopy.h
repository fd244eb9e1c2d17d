#pragma once

#include "platform/ProfileFile.h"
#include "platform/windows/WaitLimit.h"

#include <span>
#include <string>

namespace qmv40 {

/// Writes entries as ProfileWriter::Commit promises. `waitLimit` limits all its waiting.
bool WriteEntries(const std::wstring& file, std::span<const ProfileEntry> entries, WaitLimit& waitLimit);

/// Whether the name begins with a drive and a folder, or with a server. The profile functions look for a file with any
/// other name in a folder that they choose.
bool IsAbsolute(const std::wstring& file);

/// Whether a file could not be opened or replaced because another program has it open. ERROR_ACCESS_DENIED can have
/// this cause too.
inline bool IsInUse(DWORD error) { return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED; }

} // namespace qmv40
