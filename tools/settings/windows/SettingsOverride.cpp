#include "tools/settings/SettingsOverride.h"

#include "tools/text/Failures.h"

namespace qmv40::settings {

struct SettingsOverride::State {};

SettingsOverride::SettingsOverride(const std::string& fileName) {
    if (!fileName.empty()) {
        throw text::UsageError{"--settings: on Windows the head's dimensions stand in the registry; import " +
                               fileName + " there instead"};
    }
}

SettingsOverride::~SettingsOverride() = default;

} // namespace qmv40::settings
