#pragma once

#include "platform/ProfileFile.h"
#include "platform/windows/Patience.h"

#include <span>
#include <string>

namespace qmv40 {

/// Writes entries as ProfileWriter::Commit promises. Waits with `patience` alone.
bool WriteEntries(const std::wstring& file, std::span<const ProfileEntry> entries, Patience& patience);

/// The profile functions look for a file with any other name in a folder of their own choice.
bool IsAbsolute(const std::wstring& file);

/// Whether a file could not be opened or replaced because somebody has it open. Windows says that access is denied for
/// that reason too.
inline bool IsInUse(DWORD error) { return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED; }

} // namespace qmv40
