#include "platform/ModuleState.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace {

std::atomic<long> callsUnderWay{0};

constexpr unsigned int flagBits = 0x003F; // of either unit

#ifdef __SSE2__
// Round to nearest, gradual underflow, every exception masked.
constexpr unsigned int defaultVectorControl = 0x1F80;

unsigned int VectorControl() { return _mm_getcsr(); }
void SetVectorControl(unsigned int control) { _mm_setcsr(control); }
#else
constexpr unsigned int defaultVectorControl = 0;

unsigned int VectorControl() { return defaultVectorControl; }
void SetVectorControl(unsigned int) {}        // fenv_t holds everything here
#endif

// The older floating-point unit, which long doubles and parts of the C library use. Its two words are read in a moment;
// taking its whole environment and putting it back twice, as the C library does, takes as long as the arithmetic of
// half a plan. So that is for hosts that have set it in their own way.
#ifdef __x86_64__
bool IsOlderUnitAtDefault() {
    constexpr unsigned short defaultControl = 0x037F;
    unsigned short control = 0;
    asm volatile("fnstcw %0" : "=m"(control));
    return control == defaultControl;
}

unsigned int OlderUnitsFlags() {
    unsigned short status = 0;
    asm volatile("fnstsw %0" : "=m"(status));
    return status & flagBits;
}

void SetOlderUnitsFlags(unsigned int flags) {
    std::array<std::uint32_t, 7> environment{};
    asm volatile("fnstenv %0" : "=m"(environment));
    environment[1] = (environment[1] & ~flagBits) | flags;
    asm volatile("fldenv %0" : : "m"(environment));
}
#else
bool IsOlderUnitAtDefault() { return false; } // fenv_t has to be taken and put back
unsigned int OlderUnitsFlags() { return 0; }
void SetOlderUnitsFlags(unsigned int) {}
#endif

} // namespace

ModuleStateGuard::ModuleStateGuard() noexcept {
    callsUnderWay.fetch_add(1);
    callersErrorNumber = errno;
    callersVectorControl = VectorControl();
    callersFlags = OlderUnitsFlags();
    isHostAtDefault = IsOlderUnitAtDefault();
    if (!isHostAtDefault) {
        std::fegetenv(&callersEnvironment);
        std::fesetenv(FE_DFL_ENV);
    }
    // Flags are left as they are: they change no result, and to write the word that holds them may take as long as a
    // turn of the head.
    if ((callersVectorControl & ~flagBits) != defaultVectorControl) SetVectorControl(defaultVectorControl);
}

ModuleStateGuard::~ModuleStateGuard() {
    if (!isHostAtDefault)
        std::fesetenv(&callersEnvironment);
    else if (OlderUnitsFlags() != callersFlags)
        SetOlderUnitsFlags(callersFlags);
    if (VectorControl() != callersVectorControl) SetVectorControl(callersVectorControl);
    errno = callersErrorNumber;
    callsUnderWay.fetch_sub(1);
}

long CallsUnderWay() noexcept { return callsUnderWay.load(); }
