#pragma once

#include <cfenv>

/// Puts the calling thread into the module's own state while a method runs, and back into the caller's when it ends,
/// whichever way it ends: the default floating-point environment (round to nearest, gradual underflow), so that a
/// host's rounding mode changes none of our results and our arithmetic leaves none of its flags in the host. The C
/// library's error number, which our calls of it change, is put back too.
class ModuleStateGuard {
public:
    ModuleStateGuard() noexcept;
    ModuleStateGuard(const ModuleStateGuard&) = delete;
    ModuleStateGuard& operator=(const ModuleStateGuard&) = delete;
    ~ModuleStateGuard();

private:
    std::fenv_t callersEnvironment; // only when it is not the default
    bool isHostAtDefault = false;   // but for the vector unit, and for flags
    unsigned int callersFlags = 0;  // then these, of the older floating-point unit
    // The vector unit's control word again: not every C library's fenv_t holds it.
    unsigned int callersVectorControl = 0;
    int callersErrorNumber = 0;
};

/// Methods of this module that are running now, over all threads; the module must not be unloaded while there is one.
long CallsUnderWay() noexcept;
