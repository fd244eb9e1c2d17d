#include "platform/ModuleState.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace qmv40 {

namespace {

std::atomic<long> callsUnderWay{0};

#ifdef __SSE2__

// An x86 processor has two floating-point units with a control word each: MXCSR governs SSE, in which the component
// computes, and the x87 control word governs x87, in which some C libraries compute sines and arctangents. A word is
// written only if it differs: the functions of <cfenv> write the whole state of both units, which takes up to 9 us in
// Windows programs.

constexpr unsigned int ownMxcsr = 0x1F80;        // round to nearest, gradual underflow, every exception masked
constexpr unsigned int mxcsrFlags = 0x003F;      // exception flags: they change no result
constexpr unsigned short ownX87Control = 0x037F; // round to nearest, 64 bits, every exception masked
constexpr unsigned short x87Flags = 0x007F;

unsigned short X87Control() {
    unsigned short control = 0;
    asm volatile("fnstcw %0" : "=m"(control));
    return control;
}

unsigned short X87Flags() {
    unsigned short status = 0;
    asm volatile("fnstsw %0" : "=m"(status));
    return status & x87Flags;
}

/// Flags are cleared first: a flag that is set raises an exception as soon as the control word unmasks it.
void SetX87Control(unsigned short control) {
    if (X87Flags() != 0) asm volatile("fnclex");
    asm volatile("fldcw %0" : : "m"(control));
}

/// x87 flags can only be set by loading the whole x87 environment.
void SetX87ControlAndFlags(unsigned short control, unsigned short flags) {
    constexpr std::uint32_t lowHalf = 0xFFFF;
    std::array<std::uint32_t, 7> environment{}; // its first two words hold control and status
    asm volatile("fnstenv %0" : "=m"(environment));
    environment[0] = (environment[0] & ~lowHalf) | control;
    environment[1] = (environment[1] & ~std::uint32_t{x87Flags}) | flags;
    asm volatile("fldenv %0" : : "m"(environment));
}

#endif

} // namespace

#ifdef __SSE2__

ModuleStateGuard::ModuleStateGuard() noexcept
    : callersMxcsr(_mm_getcsr()), callersX87Control(X87Control()), callersX87Flags(X87Flags()),
      callersErrorNumber(errno) {
    callsUnderWay.fetch_add(1);
    if (callersX87Control != ownX87Control) SetX87Control(ownX87Control);
    if ((callersMxcsr & ~mxcsrFlags) != ownMxcsr) _mm_setcsr(ownMxcsr);
}

ModuleStateGuard::~ModuleStateGuard() {
    if (callersX87Control != ownX87Control || callersX87Flags != X87Flags()) {
        if (callersX87Flags == 0) {
            SetX87Control(callersX87Control);
        } else {
            SetX87ControlAndFlags(callersX87Control, callersX87Flags);
        }
    }
    if (_mm_getcsr() != callersMxcsr) _mm_setcsr(callersMxcsr);
    errno = callersErrorNumber;
    callsUnderWay.fetch_sub(1);
}

#else

ModuleStateGuard::ModuleStateGuard() noexcept : callersErrorNumber(errno) {
    callsUnderWay.fetch_add(1);
    std::fegetenv(&callersEnvironment);
    std::fesetenv(FE_DFL_ENV);
}

ModuleStateGuard::~ModuleStateGuard() {
    std::fesetenv(&callersEnvironment);
    errno = callersErrorNumber;
    callsUnderWay.fetch_sub(1);
}

#endif

long CallsUnderWay() noexcept { return callsUnderWay.load(); }

} // namespace qmv40
