#pragma once

#include <cfenv>

namespace qmv40 {

/// The module's own floating-point state while a method runs: round to nearest, gradual underflow, no traps, and x87
/// with 64 bits of precision. Therefore the host's settings change no result. When the method returns or throws, the
/// host's settings, exception flags and error number (errno) are restored.
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

/// The number of methods of this module that are running, in all threads. While it is not 0 the module must not be
/// unloaded.
long CallsUnderWay() noexcept;

} // namespace qmv40
