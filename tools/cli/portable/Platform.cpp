#include "cli/Platform.h"

#include "cli/Failures.h"
#include "cli/Text.h"

#include <cstdlib>
#include <optional>
#include <unistd.h>

namespace {

constexpr const char* settingsVariable = "QMV40_SETTINGS";

std::optional<std::string> Environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace

ComponentRuntime::ComponentRuntime() = default;
ComponentRuntime::~ComponentRuntime() = default;

struct SettingsOverride::State {
    std::optional<std::string> before = Environment(settingsVariable);
};

SettingsOverride::SettingsOverride(const std::string& fileName) {
    if (fileName.empty()) return;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(PathOf(fileName), ignored)) {
        throw InputError{fileName, {}, "no such settings file"};
    }
    state = std::make_unique<State>();
    setenv(settingsVariable, fileName.c_str(), 1);
}

SettingsOverride::~SettingsOverride() {
    if (state == nullptr) return;
    if (state->before) {
        setenv(settingsVariable, state->before->c_str(), 1);
    } else {
        unsetenv(settingsVariable);
    }
}

// A path converts between UTF-8 and UTF-32 whatever the locale; between narrow and wide it asks the locale.

std::string ToUtf8(std::wstring_view wide) {
    const std::u8string utf8 = std::filesystem::path(std::u32string(wide.begin(), wide.end())).u8string();
    return {utf8.begin(), utf8.end()};
}

std::wstring FileNameForComponent(const std::filesystem::path& path) {
    try {
        const std::u32string name = path.u32string();
        return {name.begin(), name.end()};
    } catch (const std::filesystem::filesystem_error&) {
        throw InputError{path.string(), {}, "the name is not UTF-8"};
    }
}

bool OutputIsTerminal() { return isatty(STDOUT_FILENO) != 0; }

bool ErrorsGoToTerminal() { return isatty(STDERR_FILENO) != 0; }
