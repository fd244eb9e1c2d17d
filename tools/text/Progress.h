#pragma once

#include "tools/text/Console.h"

#include <chrono>
#include <cstddef>

namespace qmv40::text {

/// Shows the progress of a long job. On a terminal it is one line, which is overwritten and removed at the end.
/// Elsewhere it is a new line every few seconds.
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
