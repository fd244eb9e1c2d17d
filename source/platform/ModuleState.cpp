#include "platform/ModuleState.h"

#include <atomic>
#include <cerrno>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace {

std::atomic<long> callsUnderWay{0};

#ifdef __SSE2__
// Round to nearest, gradual underflow, every exception masked, no flag raised.
constexpr unsigned int defaultVectorControl = 0x1F80;

unsigned int VectorControl() { return _mm_getcsr(); }
void SetVectorControl(unsigned int control) { _mm_setcsr(control); }
#else
constexpr unsigned int defaultVectorControl = 0;

unsigned int VectorControl() { return defaultVectorControl; }
void SetVectorControl(unsigned int) {}        // fenv_t holds everything here
#endif

#ifdef __x86_64__
/// Whether the older floating-point unit, which long doubles and parts of the C library use, is as a thread starts with
/// it, no flag raised. Its two words are read in a moment; taking its whole environment and putting it back twice, as
/// the C library does, takes as long as the arithmetic of half a plan.
bool IsOlderUnitAtDefault() {
    constexpr unsigned short defaultControl = 0x037F;
    constexpr unsigned short flags = 0x003F;
    unsigned short control = 0;
    unsigned short status = 0;
    asm volatile("fnstcw %0" : "=m"(control));
    asm volatile("fnstsw %0" : "=m"(status));
    return control == defaultControl && (status & flags) == 0;
}
#else
bool IsOlderUnitAtDefault() { return false; } // fenv_t has to be taken and put back
#endif

} // namespace

ModuleStateGuard::ModuleStateGuard() noexcept {
    callsUnderWay.fetch_add(1);
    callersErrorNumber = errno;
    callersVectorControl = VectorControl();
    isHostAtDefault = IsOlderUnitAtDefault();
    if (!isHostAtDefault) {
        std::fegetenv(&callersEnvironment);
        std::fesetenv(FE_DFL_ENV);
    }
    SetVectorControl(defaultVectorControl);
}

ModuleStateGuard::~ModuleStateGuard() {
    if (!isHostAtDefault)
        std::fesetenv(&callersEnvironment);
    else if (!IsOlderUnitAtDefault())
        std::fesetenv(FE_DFL_ENV);
    SetVectorControl(callersVectorControl);
    errno = callersErrorNumber;
    callsUnderWay.fetch_sub(1);
}

long CallsUnderWay() noexcept { return callsUnderWay.load(); }
