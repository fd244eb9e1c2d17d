#pragma once

#include <string>
#include <vector>

/// The settings of the process as lines of text: locale, environment, current folder, floating-point rounding and
/// flags. Also, on Linux, open files, signals and the number of threads, on Windows the number of handles and the
/// error mode.
class HostSnapshot {
public:
    HostSnapshot();

    const std::vector<std::string>& Lines() const noexcept { return lines; }

private:
    /// Adds the settings that are read in another way on each platform.
    void AddPlatform();

    std::vector<std::string> lines;
};
