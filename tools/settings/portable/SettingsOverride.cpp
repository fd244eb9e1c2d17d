#include "tools/settings/SettingsOverride.h"

#include "tools/settings/MachineSettings.h"
#include "tools/text/Failures.h"
#include "tools/text/Text.h"

#include <cstdlib>

namespace qmv40::settings {

/// Sets the environment variable that names the settings file. The destructor restores it.
struct SettingsOverride::State {
    explicit State(const char* fileName) {
        const char* const value = std::getenv(settingsVariable);
        wasSet = value != nullptr;
        if (wasSet) before = value;
        setenv(settingsVariable, fileName, 1);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (wasSet) {
            setenv(settingsVariable, before.c_str(), 1);
        } else {
            unsetenv(settingsVariable);
        }
    }

    bool wasSet;
    std::string before;
};

SettingsOverride::SettingsOverride(const std::string& fileName) {
    if (fileName.empty()) return;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(text::PathOf(fileName), ignored)) {
        throw text::InputError{fileName, {}, "no such settings file"};
    }
    state = std::make_unique<State>(fileName.c_str());
}

// The null device is not an ordinary file, so it has no settings.
SettingsOverride::SettingsOverride() : state(std::make_unique<State>("/dev/null")) {}

SettingsOverride SettingsOverride::BuiltIn() { return {}; }

SettingsOverride::~SettingsOverride() = default;

} // namespace qmv40::settings
