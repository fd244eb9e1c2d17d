#pragma once

#include "tools/settings/MachineSettings.h"
#include "tools/settings/SettingsReading.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

#include <array>

namespace qmv40::settings {

/// Where the settings are stored, and what is wrong when the component does not read them.
std::string PlaceText(const MachineSettings& machine);

/// The fourteen dimensions for a person, with units: in force, built in, and as stored.
void PrintSettings(const SettingsReading& reading, const std::array<double, headSettingCount>& inForce,
                   const text::Console& console);

/// An object for each setting: name, unit, inForce, builtIn, origin ("builtIn" or "stored") and the stored text, if
/// any.
text::Json SettingsJson(const SettingsReading& reading, const std::array<double, headSettingCount>& inForce);

} // namespace qmv40::settings
