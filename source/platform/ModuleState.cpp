#include "platform/ModuleState.h"

#include <atomic>

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
void SetVectorControl(unsigned int) {} // fenv_t holds everything here
#endif

} // namespace

ModuleStateGuard::ModuleStateGuard() noexcept {
    callsUnderWay.fetch_add(1);
    callersVectorControl = VectorControl();
    std::fegetenv(&callersEnvironment);
    std::fesetenv(FE_DFL_ENV);
    SetVectorControl(defaultVectorControl);
}

ModuleStateGuard::~ModuleStateGuard() {
    std::fesetenv(&callersEnvironment);
    SetVectorControl(callersVectorControl);
    callsUnderWay.fetch_sub(1);
}

long CallsUnderWay() noexcept { return callsUnderWay.load(); }
