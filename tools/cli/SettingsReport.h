#pragma once

#include "cli/Console.h"
#include "cli/Json.h"
#include "cli/MachineSettings.h"
#include "cli/SettingsReading.h"

#include <array>

/// Where the settings stand, and what is the matter when they do not.
std::string PlaceText(const MachineSettings& machine);

/// The fourteen dimensions for a person, with units: in force, built in, and as stored.
void PrintSettings(const SettingsReading& reading, const std::array<double, settingCount>& inForce,
                   const Console& console);

/// One document a setting: name, unit, inForce, builtIn, origin ("builtIn" or "stored") and the stored text, if any.
Json SettingsJson(const SettingsReading& reading, const std::array<double, settingCount>& inForce);
