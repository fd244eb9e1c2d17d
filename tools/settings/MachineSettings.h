#pragma once

#include "tools/settings/SettingsReading.h"

#include <memory>
#include <string>

namespace qmv40::settings {

/// What stands at this moment where the component reads the head's dimensions on this machine.
struct MachineSettings {
    std::string place;     ///< a file, or a key of the registry
    std::string state;     ///< completes "the settings are ...": "there", "missing", "unreadable"
    StoredSettings stored; ///< nothing unless they are there; its complaints tell what is wrong with the place
};

MachineSettings ReadMachineSettings();

/// In a sentence, what to do with a settings file so that it counts on this machine.
std::string HowToPutInPlace(const std::string& fileName);

/// Lets the component's built-in dimensions hold in this process while it lives, whatever the machine's settings say.
/// The component must have been created before. Throws ComponentError when the settings cannot be set aside.
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
