#pragma once

#include "platform/Automation.h"

#include <algorithm>

namespace qmv40 {

/// The functions that read the time and wait, in milliseconds. A test replaces them.
struct WaitingClock {
    decltype(&GetTickCount64) now = GetTickCount64;
    decltype(&Sleep) sleep = Sleep;
};

/// Limits how long a save waits for a program that holds its file: 250 ms in all, because the caller's window does not
/// react meanwhile.
class WaitLimit {
public:
    explicit WaitLimit(WaitingClock theClock = {}) : clock(theClock) {}

    /// Waits about 1 ms. Returns false at once if the time is used up.
    bool Wait() {
        if (spent + step > limit - timerTick) return false;
        const ULONGLONG begin = clock.now();
        clock.sleep(step);
        spent += std::max<ULONGLONG>(step, clock.now() - begin);
        return true;
    }

private:
    static constexpr ULONGLONG limit = 250;
    static constexpr ULONGLONG timerTick = 16; ///< a sleep can end this much too late
    static constexpr DWORD step = 1;

    WaitingClock clock;
    ULONGLONG spent = 0;
};

} // namespace qmv40
