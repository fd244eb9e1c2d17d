#pragma once

#include "tools/settings/Complaint.h"
#include "tools/settings/HeadSettings.h"
#include "tools/settings/RegistryFile.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qmv40::settings {

/// The rules by which the component reads the fourteen dimensions, applied so that they can be explained: what counts,
/// what does not, why, and what to do about it.

/// What stands under the component's key.
struct StoredSettings {
    bool isKeyThere = false;
    std::vector<StoredValue> values; ///< one of each name
    std::vector<Complaint> complaints;
};

struct SettingReading {
    double value = 0.0;                ///< by the rules
    bool isStoredValue = false;        ///< it comes from the store; the built-in value otherwise
    std::optional<StoredValue> stored; ///< whether it is read or not
};

struct SettingsReading {
    std::array<SettingReading, headSettingCount> settings;
    std::vector<Complaint> complaints; ///< those of the store too, in the order of its lines
};

/// The component's key in the content of a settings file.
StoredSettings SettingsInFile(std::string_view content);

SettingsReading ReadSettings(StoredSettings stored);

} // namespace qmv40::settings
