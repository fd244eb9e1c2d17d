#pragma once

#include "tools/settings/SettingsReading.h"

#include <string>

namespace qmv40::settings {

/// The environment variable that names a settings file for one process. It counts on Linux only.
inline constexpr const char* settingsVariable = "QMV40_SETTINGS";

/// The content, at this moment, of the place where the component reads the head's dimensions on this machine.
struct MachineSettings {
    std::string place;     ///< a file, or a key of the registry
    std::string state;     ///< completes "the settings are ...": "there", "missing", "unreadable"
    StoredSettings stored; ///< empty unless they are there; its findings say what is wrong with the place
};

MachineSettings ReadMachineSettings();

/// What to do with a settings file to put it in force on this machine, in a sentence.
std::string HowToPutInPlace(const std::string& fileName);

} // namespace qmv40::settings
