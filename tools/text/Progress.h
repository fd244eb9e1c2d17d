#pragma once

#include "tools/text/Console.h"

#include <chrono>
#include <cstddef>

namespace qmv40::text {

/// Shows how far a long job is: on a terminal a line that is written over, elsewhere a line every few seconds. Nothing
/// of it is left on a terminal when it is done.
class Progress {
public:
    Progress(const Console& theConsole, std::string theTask, std::size_t theTotal);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    void Advance(std::size_t steps);

private:
    using Clock = std::chrono::steady_clock;

    void Show();

    const Console& console;
    std::string task;
    std::size_t total;
    std::size_t done = 0;
    Clock::time_point shown;
};

} // namespace qmv40::text
