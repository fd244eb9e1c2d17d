#pragma once

#include "tools/settings/SettingsReading.h"

#include <memory>
#include <string>

namespace qmv40::settings {

/// The content, at this moment, of the place where the component reads the head's dimensions on this machine.
struct MachineSettings {
    std::string place;     ///< a file, or a key of the registry
    std::string state;     ///< completes "the settings are ...": "there", "missing", "unreadable"
    StoredSettings stored; ///< empty unless they are there; its findings say what is wrong with the place
};

MachineSettings ReadMachineSettings();

/// What to do with a settings file to put it in force on this machine, in a sentence.
std::string HowToPutInPlace(const std::string& fileName);

/// While it lives, the component uses its built-in dimensions in this process, whatever the machine's settings are. The
/// component must have been created before. Throws ComponentError when the settings cannot be set aside.
class BuiltInSettings {
public:
    BuiltInSettings();
    BuiltInSettings(const BuiltInSettings&) = delete;
    BuiltInSettings& operator=(const BuiltInSettings&) = delete;
    ~BuiltInSettings();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace qmv40::settings
