#pragma once

#include <string>
#include <vector>

/// What a process has set for all that runs in it, as lines of text: locale, environment, current folder,
/// floating-point rounding, and what each platform has besides (open files, signals, threads).
class HostSnapshot {
public:
    HostSnapshot();

    const std::vector<std::string>& Lines() const noexcept { return lines; }

private:
    /// What only one platform has.
    void AddPlatform();

    std::vector<std::string> lines;
};
