#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qmv40::settings {

/// The fourteen fixed dimensions of the head, as the settings store names them.

/// Where the component looks, below HKEY_LOCAL_MACHINE.
inline constexpr std::string_view settingsKeyPath = R"(SOFTWARE\Hollbeck\VRX Software\QMV40Calculator)";
inline constexpr std::string_view machineRoot = R"(HKEY_LOCAL_MACHINE\)";

struct HeadSetting {
    const char* name;      ///< as it is stored
    const char* shortName; ///< as it is typed
    double builtIn;
    const char* unit;
    /// Which offset it belongs to: the settings of one are read together, in their order in the table.
    int offset;
};

inline constexpr std::size_t settingCount = 14;

/// In the order in which the component reads those of one offset.
std::span<const HeadSetting, settingCount> AllHeadSettings();

/// The setting of that name, stored or short, letter case ignored.
std::optional<std::size_t> FindHeadSetting(std::string_view name);

/// The stored name (or the short one, when `text` looks like that) that is spelled most alike; empty when none is near.
std::string NearestSettingName(std::string_view text);

/// What the component on this machine takes, in the order of the table: its own readers say so, at this moment.
std::array<double, settingCount> SettingsInForce();

} // namespace qmv40::settings
