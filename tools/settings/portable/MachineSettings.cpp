#include "tools/settings/MachineSettings.h"

#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"

#include <cstdlib>

namespace qmv40::settings {

namespace {

constexpr const char* machineFile = "/etc/qmv40/settings.reg";

/// The file that the environment variable names; empty when it is not set.
std::string ChosenFile() {
    const char* const chosen = std::getenv(settingsVariable);
    return chosen == nullptr ? "" : chosen;
}

Finding Unreadable(const std::string& problem) {
    return FindingAbout({}, "settings-unreadable", Severity::Fault, problem,
                        "Put a readable settings file there; until then the built-in values count.");
}

} // namespace

MachineSettings ReadMachineSettings() {
    const std::string chosen = ChosenFile();
    MachineSettings settings{chosen.empty() ? machineFile : chosen, "missing", {}};
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(text::PathOf(settings.place), ignored);
    if (!std::filesystem::exists(status)) {
        if (chosen.empty()) return settings;
        settings.stored.findings.push_back(
            FindingAbout({}, "settings-missing", Severity::Fault,
                         "The file that " + std::string(settingsVariable) + " names is not there",
                         "Correct the variable, or unset it; until then the built-in values count."));
        return settings;
    }
    settings.state = "unreadable";
    if (!std::filesystem::is_regular_file(status)) {
        settings.stored.findings.push_back(Unreadable(settings.place + " is not an ordinary file"));
        return settings;
    }
    try {
        settings.stored = SettingsInFile(text::ReadWholeFile(settings.place));
        settings.state = "there";
    } catch (const text::InputError& error) {
        settings.stored.findings.push_back(Unreadable(settings.place + " " + error.reason));
    }
    return settings;
}

std::string HowToPutInPlace(const std::string& fileName) {
    return "To put it in place: sudo install -D -m 644 \"" + fileName + "\" " + machineFile;
}

} // namespace qmv40::settings
