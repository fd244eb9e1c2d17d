#include "tests/neighbours/Neighbour.h"

#include <cfenv>

#if defined(__SSE2__) && defined(__x86_64__)
#include <xmmintrin.h>
#endif

/// The host's floating-point environment does not affect results and does not change.

namespace {

class FloatingPoint : public Neighbour {};

TEST_F(FloatingPoint, RoundingModeHasNoEffectAndDoesNotChange) {
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        SCOPED_TRACE(mode);
        std::fesetround(mode);
        const Results actual = job.Do();
        const int after = std::fegetround();
        std::fesetround(FE_TONEAREST);
        ExpectSame(actual, expected);
        EXPECT_EQ(after, mode);
    }
}

TEST_F(FloatingPoint, FlagsDoNotChange) {
    std::feclearexcept(FE_ALL_EXCEPT);
    job.Do();
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
}

#if defined(__SSE2__) && defined(__x86_64__)

/// The processor's two control words: MXCSR with its flags, and x87.
struct ControlWords {
    unsigned int vector;
    unsigned short stack; ///< x87: precision, rounding and masks

    static ControlWords Now() {
        ControlWords words{_mm_getcsr(), 0};
        __asm__ volatile("fnstcw %0" : "=m"(words.stack));
        return words;
    }
    void Set() const {
        __asm__ volatile("fnclex"); // a set flag would cause a trap at once
        _mm_setcsr(vector);
        __asm__ volatile("fldcw %0" : : "m"(stack));
    }
    bool operator==(const ControlWords&) const = default;
};

TEST_F(FloatingPoint, ControlWordsHaveNoEffectAndDoNotChange) {
    constexpr unsigned int flushResults = 0x8000, flushOperands = 0x0040, vectorDefault = 0x1F80;
    constexpr unsigned short stackDefault = 0x037F;
    const struct {
        unsigned int vector;
        unsigned short stack;
        const char* why;
    } hosts[] = {
        {vectorDefault | flushResults, stackDefault, "subnormal results become zero"},
        {vectorDefault | flushOperands, stackDefault, "subnormal operands count as zero"},
        {vectorDefault | flushResults | flushOperands, stackDefault, "both, as in graphics and sound programs"},
        {vectorDefault, 0x007F, "24 bits of precision, as older graphics libraries set it"},
        {vectorDefault, 0x027F, "53 bits of precision, the default of some compilers"},
        {vectorDefault | 0x6000, 0x0F7F, "rounded towards zero in both units"},
        {vectorDefault | 0x2000, 0x077F, "downwards"},
        {vectorDefault | 0x4000, 0x0B7F, "upwards"},
        {0x0000, 0x0340, "every exception is a trap"},
        {0x1900, 0x0372, "division by zero, overflow and invalid operation are traps, as in some languages"},
        {vectorDefault | 0x003F, stackDefault, "all flags are set"},
    };
    const ControlWords own = ControlWords::Now();
    for (const auto& [vector, stack, why] : hosts) {
        SCOPED_TRACE(why);
        const ControlWords host{vector, stack};
        host.Set();
        const Results actual = job.Do();
        const ControlWords after = ControlWords::Now();
        own.Set();
        ExpectSame(actual, expected);
        EXPECT_EQ(after.vector, host.vector);
        EXPECT_EQ(after.stack, host.stack);
    }
}

#endif

} // namespace
