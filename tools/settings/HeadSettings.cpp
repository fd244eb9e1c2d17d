#include "tools/settings/HeadSettings.h"

#include "formats/AsciiText.h"

#include <algorithm>

namespace qmv40::settings {

std::optional<std::size_t> FindHeadSetting(std::string_view name) {
    for (std::size_t i = 0; i < headSettingCount; ++i) {
        const HeadSetting& setting = HeadSettings()[i];
        if (ascii::EqualIgnoringCase(name, setting.name) || ascii::EqualIgnoringCase(name, setting.shortName)) return i;
    }
    return std::nullopt;
}

std::array<double, headSettingCount> SettingsInForce() {
    std::array<double, headSettingCount> values{};
    std::ranges::transform(ReadHeadSettings(), values.begin(), &qmv40::SettingReading::value);
    return values;
}

} // namespace qmv40::settings
