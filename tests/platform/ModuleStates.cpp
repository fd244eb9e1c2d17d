#include "platform/ModuleState.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>
#include <vector>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

/// What a host has set must not reach our arithmetic, and our arithmetic must not reach the host.

namespace {

volatile double one = 1.0;
volatile double three = 3.0;
volatile double zero = 0.0;
volatile double smallestNormal = std::numeric_limits<double>::min();
volatile double result = 0.0;

/// The double nearest to a third, by its bits; rounded up it would end in 6.
constexpr double nearestThird = 0x1.5555555555555p-2;

TEST(ModuleState, CountsTheCallsUnderWayOverAllThreads) {
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

TEST(ModuleState, CountsNoCallThatHasEndedByAnException) {
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
constexpr unsigned int flushToZero = 0x8040; ///< tiny results and tiny operands
constexpr unsigned int roundingModes[] = {0x0000, 0x2000, 0x4000, 0x6000};

/// A host that works with settings of its own; the test program's come back at the end.
class Host {
public:
    explicit Host(unsigned int control) { _mm_setcsr(control); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    ~Host() { _mm_setcsr(defaultControl); }
};

TEST(ModuleState, RoundsToNearestWhateverTheHostHasSet) {
    for (const unsigned int mode : roundingModes) {
        const Host host(defaultControl | mode);
        const ModuleStateGuard guard;
        result = one / three;
        EXPECT_EQ(result, nearestThird) << "rounding mode " << mode;
    }
}

TEST(ModuleState, KeepsTinyNumbersWhateverTheHostHasSet) {
    const Host host(defaultControl | flushToZero);
    const ModuleStateGuard guard;
    result = smallestNormal / three;
    EXPECT_NE(result, 0.0);
}

TEST(ModuleState, RaisesNoTrapThatTheHostHasSet) {
    const Host host(0); // every exception unmasked
    const ModuleStateGuard guard;
    result = one / zero;
    EXPECT_EQ(result, std::numeric_limits<double>::infinity());
}

TEST(ModuleState, GivesTheHostItsOwnSettingsAndFlagsBack) {
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

TEST(ModuleState, GivesTheHostItsSettingsBackWhenAnExceptionLeaves) {
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

#ifdef __x86_64__

/// The older floating-point unit, which long doubles and parts of the C library use.
constexpr unsigned short olderUnitsDefault = 0x037F;
constexpr unsigned short otherDefault = 0x027F; ///< 53 bits: what threads start with elsewhere
constexpr unsigned short olderUnitsFlags = 0x003F;

unsigned short OlderUnitsControl() {
    unsigned short control = 0;
    asm volatile("fnstcw %0" : "=m"(control));
    return control;
}

unsigned short FlagsOfTheOlderUnit() {
    unsigned short status = 0;
    asm volatile("fnstsw %0" : "=m"(status));
    return status & olderUnitsFlags;
}

/// A host that has the unit set in its own way; it is as the thread started with it at the end.
class OlderUnit {
public:
    explicit OlderUnit(unsigned short control) { asm volatile("fnclex\n\tfldcw %0" : : "m"(control)); }
    OlderUnit(const OlderUnit&) = delete;
    OlderUnit& operator=(const OlderUnit&) = delete;
    ~OlderUnit() { asm volatile("fnclex\n\tfldcw %0" : : "m"(olderUnitsDefault)); }
};

void RaiseAFlagOfTheOlderUnit() {
    volatile long double third = 1.0L;
    third = third / 3.0L;
}

TEST(ModuleState, SetsTheOlderUnitToItsDefaultsAndBack) {
    struct Case {
        unsigned short control;
        const char* why;
    };
    for (const Case& c : {Case{olderUnitsDefault, "as a thread starts"}, Case{otherDefault, "53 bits"},
                          Case{0x0B7F, "rounding up"}, Case{0x037A, "traps on division by zero"}}) {
        const OlderUnit host(c.control);
        {
            const ModuleStateGuard guard;
            EXPECT_EQ(OlderUnitsControl(), olderUnitsDefault) << c.why;
        }
        EXPECT_EQ(OlderUnitsControl(), c.control) << c.why;
    }
}

TEST(ModuleState, LeavesNoFlagInTheOlderUnit) {
    const OlderUnit host(olderUnitsDefault);
    {
        const ModuleStateGuard guard;
        RaiseAFlagOfTheOlderUnit();
        ASSERT_NE(FlagsOfTheOlderUnit(), 0);
    }
    EXPECT_EQ(FlagsOfTheOlderUnit(), 0);
}

TEST(ModuleState, KeepsTheFlagsThatTheHostHasRaisedInTheOlderUnitAndNoOthers) {
    for (const unsigned short control : {olderUnitsDefault, otherDefault}) {
        const OlderUnit host(control);
        RaiseAFlagOfTheOlderUnit();
        const unsigned short raised = FlagsOfTheOlderUnit();
        ASSERT_NE(raised, 0);
        {
            const ModuleStateGuard guard;
            volatile long double infinite = 1.0L;
            infinite = infinite / static_cast<long double>(zero);
            ASSERT_NE(FlagsOfTheOlderUnit(), raised);
        }
        EXPECT_EQ(FlagsOfTheOlderUnit(), raised);
        EXPECT_EQ(OlderUnitsControl(), control);
    }
}

TEST(ModuleState, KeepsWhatTheHostHasSetInTheVectorUnitApartFromTheOlderOne) {
    const OlderUnit host(olderUnitsDefault);
    const unsigned int before = _mm_getcsr();
    {
        const ModuleStateGuard guard;
        RaiseAFlagOfTheOlderUnit(); // sends the guard the long way out
        result = one / zero;
    }
    EXPECT_EQ(_mm_getcsr(), before);
}

#endif

} // namespace
