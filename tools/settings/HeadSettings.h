#pragma once

#include "settings/HeadSettings.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace qmv40::settings {

/// The component's key, spelled as the registry's own tools write it, below `machineRoot`.
inline constexpr std::string_view keyPath = R"(SOFTWARE\Hollbeck\VRX Software\QMV40Calculator)";
inline constexpr std::string_view machineRoot = R"(HKEY_LOCAL_MACHINE\)";

/// The index, in the component's table, of the setting with that stored or short name. Letter case is ignored.
std::optional<std::size_t> FindHeadSetting(std::string_view name);

/// The values that the component uses on this machine at this moment, in the order of its table.
std::array<double, headSettingCount> SettingsInForce();

} // namespace qmv40::settings
