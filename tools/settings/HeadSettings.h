#pragma once

#include "settings/HeadSettings.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace qmv40::settings {

/// The component's key as the registry's own tools write it, below `machineRoot`.
inline constexpr std::string_view keyPath = R"(SOFTWARE\Hollbeck\VRX Software\QMV40Calculator)";
inline constexpr std::string_view machineRoot = R"(HKEY_LOCAL_MACHINE\)";

/// The place in the component's table of the setting of that name, stored or short, letter case ignored.
std::optional<std::size_t> FindHeadSetting(std::string_view name);

/// What the component takes on this machine at this moment, in the order of its table.
std::array<double, headSettingCount> SettingsInForce();

} // namespace qmv40::settings
