#include "platform/ModuleState.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>
#include <vector>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

using namespace qmv40;

/// The host's floating-point settings must not affect the component's arithmetic, and the component must restore them.

namespace {

volatile double one = 1.0;
volatile double three = 3.0;
volatile double zero = 0.0;
volatile double smallestNormal = std::numeric_limits<double>::min();
volatile double result = 0.0;

/// The double nearest to 1/3. Rounded up, its last digit would be 6.
constexpr double nearestThird = 0x1.5555555555555p-2;

TEST(ModuleState, CountsTheRunningCallsOfAllThreads) {
    const long before = CallsUnderWay();
    const ModuleStateGuard here;
    std::atomic<bool> entered{false}, leave{false};
    std::thread other([&] {
        const ModuleStateGuard there;
        entered = true;
        while (!leave) std::this_thread::yield();
    });
    while (!entered) std::this_thread::yield();
    EXPECT_EQ(CallsUnderWay(), before + 2);
    leave = true;
    other.join();
    EXPECT_EQ(CallsUnderWay(), before + 1);
}

TEST(ModuleState, DoesNotCountACallAfterAnException) {
    const long before = CallsUnderWay();
    EXPECT_THROW(
        {
            const ModuleStateGuard guard;
            throw 1;
        },
        int);
    EXPECT_EQ(CallsUnderWay(), before);
}

#ifdef __SSE2__

constexpr unsigned int defaultControl = 0x1F80;
constexpr unsigned int flushToZero = 0x8040; ///< subnormal results and operands become zero
constexpr unsigned int roundingModes[] = {0x0000, 0x2000, 0x4000, 0x6000};

/// Sets MXCSR as a host can. Restores the test program's settings at the end.
class Host {
public:
    explicit Host(unsigned int control) { _mm_setcsr(control); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    ~Host() { _mm_setcsr(defaultControl); }
};

TEST(ModuleState, RoundsToNearestInEveryModeOfTheHost) {
    for (const unsigned int mode : roundingModes) {
        const Host host(defaultControl | mode);
        const ModuleStateGuard guard;
        result = one / three;
        EXPECT_EQ(result, nearestThird) << "rounding mode " << mode;
    }
}

TEST(ModuleState, KeepsSubnormalNumbersWhenTheHostFlushesThem) {
    const Host host(defaultControl | flushToZero);
    const ModuleStateGuard guard;
    result = smallestNormal / three;
    EXPECT_NE(result, 0.0);
}

TEST(ModuleState, RaisesNoTrapWithTheHostsExceptionsUnmasked) {
    const Host host(0); // every exception unmasked
    const ModuleStateGuard guard;
    result = one / zero;
    EXPECT_EQ(result, std::numeric_limits<double>::infinity());
}

TEST(ModuleState, RestoresTheHostsSettingsAndFlags) {
    constexpr unsigned int underflowFlag = 0x10;
    for (const unsigned int mode : roundingModes) {
        const unsigned int control = defaultControl | mode | flushToZero | underflowFlag;
        const Host host(control);
        {
            const ModuleStateGuard guard;
            result = one / zero; // raises the flag of a division by zero
        }
        EXPECT_EQ(_mm_getcsr(), control);
    }
}

TEST(ModuleState, RestoresTheHostsSettingsAfterAnException) {
    const unsigned int control = defaultControl | roundingModes[2];
    const Host host(control);
    try {
        const ModuleStateGuard guard;
        throw 1;
    } catch (int) {
        EXPECT_EQ(_mm_getcsr(), control);
    }
}

#endif

#ifdef __SSE2__

/// x87, the processor's older floating-point unit. Long doubles and parts of some C libraries use it.
constexpr unsigned short x87Default = 0x037F;
constexpr unsigned short x87OfThePlatform = 0x027F; ///< 53 bits: the default of Windows programs
constexpr unsigned short x87Flags = 0x003F;

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

/// Sets the x87 control word as a host can. Restores the test program's settings at the end.
class X87Host {
public:
    explicit X87Host(unsigned short control) { asm volatile("fnclex\n\tfldcw %0" : : "m"(control)); }
    X87Host(const X87Host&) = delete;
    X87Host& operator=(const X87Host&) = delete;
    ~X87Host() { asm volatile("fnclex\n\tfldcw %0" : : "m"(x87Default)); }
};

void RaiseInexactInX87() {
    volatile long double third = 1.0L;
    third = third / 3.0L;
}

void RaiseDivisionByZeroInX87() {
    volatile long double infinite = 1.0L;
    infinite = infinite / static_cast<long double>(zero);
}

TEST(ModuleState, SetsX87ToItsDefaultsAndBack) {
    struct Case {
        unsigned short control;
        const char* why;
    };
    for (const Case& c :
         {Case{x87Default, "the default"}, Case{x87OfThePlatform, "53 bits"}, Case{0x007F, "24 bits"},
          Case{0x0B7F, "rounding up"}, Case{0x037A, "traps on invalid operations and on division by zero"},
          Case{0x0340, "traps on all"}}) {
        const X87Host host(c.control);
        {
            const ModuleStateGuard guard;
            EXPECT_EQ(X87Control(), x87Default) << c.why;
            RaiseInexactInX87(); // must cause no trap, neither now nor after the host's setting is restored
        }
        EXPECT_EQ(X87Control(), c.control) << c.why;
        EXPECT_EQ(X87Flags(), 0) << c.why;
    }
}

TEST(ModuleState, RestoresTheHostsX87FlagsAndNoOthers) {
    struct Case {
        void (*hostRaises)();
        void (*moduleRaises)();
        const char* why;
    };
    for (const Case& c : {Case{RaiseInexactInX87, RaiseDivisionByZeroInX87, "another flag than the host's"},
                          Case{RaiseInexactInX87, RaiseInexactInX87, "the host's flag a second time"},
                          Case{RaiseInexactInX87, [] {}, "none"}}) {
        for (const unsigned short control : {x87Default, x87OfThePlatform}) {
            const X87Host host(control);
            c.hostRaises();
            const unsigned short raised = X87Flags();
            ASSERT_NE(raised, 0);
            {
                const ModuleStateGuard guard;
                c.moduleRaises();
            }
            EXPECT_EQ(X87Flags(), raised) << c.why << ", control word " << control;
            EXPECT_EQ(X87Control(), control) << c.why;
        }
    }
}

TEST(ModuleState, RestoresMxcsrAndX87Separately) {
    const X87Host host(x87Default);
    const unsigned int before = _mm_getcsr();
    {
        const ModuleStateGuard guard;
        RaiseInexactInX87();
        result = one / zero;
    }
    EXPECT_EQ(_mm_getcsr(), before);
}

#endif

} // namespace
