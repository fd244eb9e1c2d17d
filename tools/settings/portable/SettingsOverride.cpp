#include "tools/settings/SettingsOverride.h"

#include "tools/text/Failures.h"
#include "tools/text/Text.h"

#include <cstdlib>
#include <optional>

namespace qmv40::settings {

namespace {

constexpr const char* overridden = "QMV40_SETTINGS";

std::optional<std::string> Environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

struct SettingsOverride::State {
    std::optional<std::string> before = Environment(overridden);
};

SettingsOverride::SettingsOverride(const std::string& fileName) {
    if (fileName.empty()) return;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(text::PathOf(fileName), ignored)) {
        throw text::InputError{fileName, {}, "no such settings file"};
    }
    state = std::make_unique<State>();
    setenv(overridden, fileName.c_str(), 1);
}

SettingsOverride::~SettingsOverride() {
    if (state == nullptr) return;
    if (state->before) {
        setenv(overridden, state->before->c_str(), 1);
    } else {
        unsetenv(overridden);
    }
}

} // namespace qmv40::settings
