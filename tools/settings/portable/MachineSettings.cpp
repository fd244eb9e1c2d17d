#include "tools/settings/MachineSettings.h"

#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"

#include <cstdlib>

namespace qmv40::settings {

namespace {

constexpr const char* settingsVariable = "QMV40_SETTINGS";
constexpr const char* machineFile = "/etc/qmv40/settings.reg";

/// The file that the environment variable names; empty when it is not set.
std::string ChosenFile() {
    const char* const chosen = std::getenv(settingsVariable);
    return chosen == nullptr ? "" : chosen;
}

Complaint AboutPlace(std::string problem, std::string remedy) {
    return {{}, "", std::move(problem), std::move(remedy)};
}

} // namespace

MachineSettings ReadMachineSettings() {
    const std::string chosen = ChosenFile();
    MachineSettings settings{chosen.empty() ? machineFile : chosen, "missing", {}};
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(text::PathOf(settings.place), ignored);
    if (!std::filesystem::exists(status)) {
        if (chosen.empty()) return settings;
        settings.stored.complaints.push_back(
            AboutPlace("The file that " + std::string(settingsVariable) + " names is not there",
                       "Correct the variable, or unset it; until then the built-in values count."));
        return settings;
    }
    settings.state = "unreadable";
    const std::string remedy = "Put a readable settings file there; until then the built-in values count.";
    if (!std::filesystem::is_regular_file(status)) {
        settings.stored.complaints.push_back(AboutPlace(settings.place + " is not an ordinary file", remedy));
        return settings;
    }
    try {
        settings.stored = SettingsInFile(text::ReadWholeFile(settings.place));
        settings.state = "there";
    } catch (const text::InputError& error) {
        settings.stored.complaints.push_back(AboutPlace(settings.place + " " + error.reason, remedy));
    }
    return settings;
}

std::string HowToPutInPlace(const std::string& fileName) {
    return "To put it in place: sudo install -D -m 644 \"" + fileName + "\" " + machineFile;
}

struct BuiltInSettings::State {
    const char* before = std::getenv(settingsVariable);
    std::string text = before == nullptr ? "" : before;
};

BuiltInSettings::BuiltInSettings() : state(std::make_unique<State>()) {
    setenv(settingsVariable, "/dev/null", 1); // not an ordinary file, so it holds no settings
}

BuiltInSettings::~BuiltInSettings() {
    if (state->before != nullptr) {
        setenv(settingsVariable, state->text.c_str(), 1);
    } else {
        unsetenv(settingsVariable);
    }
}

} // namespace qmv40::settings
