#pragma once

#include <cfenv>

namespace qmv40 {

/// The module's own floating-point state while a method runs: round to nearest, gradual underflow, no traps, and x87 at
/// its full 64 bits of precision. So a host's settings change none of our results. When the method ends, in whichever
/// way, the host has its own settings back, its own flags and no flag of ours, and its error number (errno).
class ModuleStateGuard {
public:
    ModuleStateGuard() noexcept;
    ModuleStateGuard(const ModuleStateGuard&) = delete;
    ModuleStateGuard& operator=(const ModuleStateGuard&) = delete;
    ~ModuleStateGuard();

private:
#ifdef __SSE2__
    unsigned int callersMxcsr;
    unsigned short callersX87Control;
    unsigned short callersX87Flags;
#else
    std::fenv_t callersEnvironment;
#endif
    int callersErrorNumber;
};

/// Methods of this module that are running now, over all threads; the module must not be unloaded while there is one.
long CallsUnderWay() noexcept;

} // namespace qmv40
