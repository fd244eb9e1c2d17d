#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

/// The few things in which the platforms differ; the build picks the folder that implements them.

/// Keeps the component usable on this thread while it lives.
class ComponentRuntime {
public:
    ComponentRuntime();
    ComponentRuntime(const ComponentRuntime&) = delete;
    ComponentRuntime& operator=(const ComponentRuntime&) = delete;
    ~ComponentRuntime(); // NOLINT(performance-trivially-destructible): not on every platform
};

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

/// The component's wide text as UTF-8.
std::string ToUtf8(std::wstring_view wide);

/// The wide form of a file name under which the component finds the same file. Throws InputError when there is none.
std::wstring FileNameForComponent(const std::filesystem::path& path);

/// Standard output goes to a terminal that understands colours.
bool OutputIsTerminal();

/// Standard error goes to one.
bool ErrorsGoToTerminal();
