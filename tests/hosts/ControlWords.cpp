// A host's floating-point control words change no result and are restored.

#include "hosts/Subjects.h"
#include "hosts/WholeJob.h"

namespace {

/// The processor's two control words: x87 and MXCSR. MXCSR contains flags too.
struct Words {
    unsigned short x87;
    unsigned int mxcsr;

    static Words Now() {
        Words words{};
        __asm__ volatile("fnstcw %0\n\tstmxcsr %1" : "=m"(words.x87), "=m"(words.mxcsr));
        return words;
    }
    void Set() const { __asm__ volatile("fnclex\n\tfldcw %0\n\tldmxcsr %1" : : "m"(x87), "m"(mxcsr)); }
};

/// A checksum of the bits of `count` plans on one head. The arithmetic of this function is exact: the rounding mode of
/// the host does not change it.
unsigned long long BitsOfPlans(const Server& server, AlignmentPoints& aPoints, AlignmentPoints& bPoints, int count) {
    IQMVCalculator2* const calculator = server.Create();
    Expect(calculator->EnterHeadGeometry(aPoints.Address(), bPoints.Address()) == S_OK, "a geometry is entered");
    Expect(calculator->SetCurrentHeadPosition(0.0, 0.0) == S_OK, "a position is set");
    unsigned long long checksum = 0;
    for (int i = 0; i < count; ++i) {
        RequiredMoves moves{};
        const double a = 15.0 * (i * 5 % 7);
        const double b = 15.0 * (i * 11 % 25) - 180.0;
        Expect(ThrownByCalculateMove(*calculator, a, b, &moves) == S_OK, "a plan is made");
        for (const double& number : moves.numbers) {
            unsigned long long bits = 0;
            __builtin_memcpy(&bits, &number, sizeof bits);
            checksum = (checksum ^ bits) * 1099511628211ULL; // the prime of the FNV-1a hash
        }
    }
    calculator->Release();
    return checksum;
}

} // namespace

void ControlWords(int rounds) {
    constexpr unsigned short x87Default = 0x037F;
    constexpr unsigned int mxcsrDefault = 0x1F80;
    const struct {
        Words words;
        const char* why;
    } hosts[] = {{{0x027F, mxcsrDefault}, "53 bits: programs of the platform start with it"},
                 {{0x007F, mxcsrDefault}, "24 bits: older graphics libraries set it"},
                 {{0x0340, 0x0000}, "every exception is a trap"},
                 {{0x0B7F, mxcsrDefault | 0x4000U}, "both units round up"},
                 {{0x0F7F, mxcsrDefault | 0x6000U}, "both units truncate"},
                 {{x87Default, mxcsrDefault | 0x8040U}, "subnormal numbers count as zero"}};
    const Server server;
    WholeJob job(0);
    AlignmentPoints aPoints(AlignmentPoints::A);
    AlignmentPoints bPoints(AlignmentPoints::B);
    Answers expected;
    const Words own = Words::Now();
    Words{x87Default, mxcsrDefault}.Set();
    job.Do(server, expected);
    const unsigned long long plans = BitsOfPlans(server, aPoints, bPoints, rounds);
    for (const auto& host : hosts) {
        Answers actual;
        host.words.Set();
        job.Do(server, actual);
        const unsigned long long actualPlans = BitsOfPlans(server, aPoints, bPoints, rounds);
        const Words after = Words::Now();
        own.Set();
        Expect(Same(actual, expected), host.why);
        Expect(actualPlans == plans, host.why);
        Expect(after.x87 == host.words.x87, host.why, after.x87);
        Expect(after.mxcsr == host.words.mxcsr, host.why, static_cast<long>(after.mxcsr));
    }
}
