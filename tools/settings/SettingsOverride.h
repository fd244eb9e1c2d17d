#pragma once

#include <memory>
#include <string>

namespace qmv40::settings {

/// Takes the head's fixed dimensions from a settings file instead of the machine's own settings while it lives.
/// With an empty name it changes nothing. Throws InputError when the file is not there, and UsageError where the
/// machine's settings cannot be set aside.
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
