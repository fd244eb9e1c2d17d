#pragma once

#include <memory>
#include <string>

namespace qmv40::settings {

/// While it lives, the component of this process does not read the machine's settings of the head. It reads a settings
/// file instead, or uses its built-in dimensions. Throws InputError when the file does not exist, and ComponentError
/// when the machine's settings cannot be set aside.
class SettingsOverride {
public:
    /// With an empty name it changes nothing.
    explicit SettingsOverride(const std::string& fileName);
    /// The built-in dimensions.
    static SettingsOverride BuiltIn();
    SettingsOverride(const SettingsOverride&) = delete;
    SettingsOverride& operator=(const SettingsOverride&) = delete;
    ~SettingsOverride();

private:
    SettingsOverride();

    struct State;
    std::unique_ptr<State> state;
};

} // namespace qmv40::settings
