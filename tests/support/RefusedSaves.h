#pragma once

#include "interface/ErrorCodes.h"
#include "tests/support/ErrorRecord.h"

#include <filesystem>

/// On Windows a save is refused if loads or other saves hold the file at every attempt for 250 ms, because writing then
/// would mix two geometries. The number of refusals depends on the load of the machine. On other systems no program can
/// hold a file.
inline constexpr bool savesCanBeRefused = std::filesystem::path::preferred_separator == '\\';

/// True for a refusal that is permitted while others save and load the same file.
inline bool IsPermittedRefusal(const Raised& save) {
    return savesCanBeRefused && save.code == QMV_E_WRITE_TO_FILE && save.record &&
           save.record->source == L"RoundThePole::WriteDoubleToIniFile";
}
