#pragma once

#include "interface/ErrorCodes.h"
#include "tests/support/ErrorRecord.h"

#include <filesystem>

/// On Windows a save that meets a load or another save each time that it looks, for 250 ms, must not write all the
/// same, because that would mix two geometries. How often this happens is a matter of the machine's load: no count is
/// promised. Elsewhere nobody can hold a file.
inline constexpr bool savesCanBeRefused = std::filesystem::path::preferred_separator == '\\';

/// Whether a save was refused as it may be while others save and load the same file.
inline bool IsPermittedRefusal(const Raised& save) {
    return savesCanBeRefused && save.code == QMV_E_WRITE_TO_FILE && save.record &&
           save.record->source == L"RoundThePole::WriteDoubleToIniFile";
}
