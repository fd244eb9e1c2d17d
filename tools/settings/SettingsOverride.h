#pragma once

#include <memory>
#include <string>

namespace qmv40::settings {

/// While it lives, the component reads the head's fixed dimensions from a settings file instead of the machine's
/// settings. With an empty name it changes nothing. Throws InputError when the file does not exist, and UsageError when
/// the machine's settings cannot be set aside.
class SettingsOverride {
public:
    explicit SettingsOverride(const std::string& fileName);
    SettingsOverride(const SettingsOverride&) = delete;
    SettingsOverride& operator=(const SettingsOverride&) = delete;
    ~SettingsOverride();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace qmv40::settings
