#pragma once

#include "formats/RegistryText.h"
#include "tools/settings/Finding.h"
#include "tools/settings/HeadSettings.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qmv40::settings {

/// The rules by which the component reads the fourteen dimensions, applied with explanations: which values count, which
/// do not, why, and the remedy.

struct StoredValue {
    std::string name;
    RegistryValue value;
    std::optional<std::size_t> line; ///< of a settings file; empty for a value in the registry

    /// The text without its terminator; empty for a value that is not a text.
    std::optional<std::string> Text() const;
};

/// What kind of value a type is, for people: "a number (dword)".
std::string TypeText(RegistryType type);

/// The content of the component's key.
struct StoredSettings {
    bool isKeyThere = false;
    std::vector<StoredValue> values; ///< one of each name
    std::vector<Finding> findings;
};

struct SettingReading {
    double value = 0.0;                ///< that the component reads
    bool isStoredValue = false;        ///< false: it is the built-in value
    std::optional<StoredValue> stored; ///< also when it is not read
};

struct SettingsReading {
    std::array<SettingReading, headSettingCount> settings;
    std::vector<Finding> findings; ///< those of the store too, in the order of its lines
};

/// The component's key in the content of a settings file.
StoredSettings SettingsInFile(const std::string& content);

SettingsReading ReadSettings(StoredSettings stored);

} // namespace qmv40::settings
