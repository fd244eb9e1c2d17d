#include "errors/Guarded.h"
#include "platform/ModuleState.h"
#include "tests/support/ErrorRecord.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <new>

using namespace qmv40;

namespace {

void RunOutOfMemory() { throw std::bad_alloc(); }

TEST(Guarded, ReturnsSuccessWhenTheBodyEnds) {
    bool ran = false;
    EXPECT_EQ(Guarded([&] { ran = true; }), S_OK);
    EXPECT_TRUE(ran);
}

TEST(Guarded, ReturnsARaisedCodeAndKeepsTheRecord) {
    const Raised raised = ReturnedBy([] { return Guarded([] { RaiseError(QMV_E_INVALID_QUADRANT, L"A::B", L"C"); }); });
    EXPECT_EQ(raised.code, QMV_E_INVALID_QUADRANT);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, L"A::B");
    EXPECT_EQ(raised.record->description, L"C");
}

TEST(Guarded, ReturnsOutOfMemoryAndLeavesNoRecord) {
    const Raised raised = ReturnedBy([] {
        Guarded([] { RaiseError(QMV_E_INVALID_QUADRANT, L"A::B", L"C"); });
        return Guarded(RunOutOfMemory);
    });
    EXPECT_EQ(raised.code, E_OUTOFMEMORY);
    EXPECT_FALSE(raised.record);
}

/// Sets a rounding mode. Rounds to nearest again at the end of the scope.
class RoundingMode {
public:
    explicit RoundingMode(int mode) { std::fesetround(mode); }
    RoundingMode(const RoundingMode&) = delete;
    RoundingMode& operator=(const RoundingMode&) = delete;
    ~RoundingMode() { std::fesetround(FE_TONEAREST); }
};

TEST(ModuleState, RoundsToNearestInsideAndRestoresTheHostsMode) {
    for (const int hosts : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
        SCOPED_TRACE(hosts);
        const RoundingMode mode(hosts);
        int inside = -1;
        Guarded([&] { inside = std::fegetround(); });
        const int afterSuccess = std::fegetround();
        Guarded([] { RaiseError(E_FAIL, L"", L""); });
        const int afterFailure = std::fegetround();
        EXPECT_EQ(inside, FE_TONEAREST);
        EXPECT_EQ(afterSuccess, hosts);
        EXPECT_EQ(afterFailure, hosts);
    }
}

TEST(ModuleState, CountsNestedCalls) {
    const long before = CallsUnderWay();
    long outer = 0;
    long inner = 0;
    Guarded([&] {
        outer = CallsUnderWay();
        Guarded([&] { inner = CallsUnderWay(); });
    });
    EXPECT_EQ(outer, before + 1);
    EXPECT_EQ(inner, before + 2);
    EXPECT_EQ(CallsUnderWay(), before);
    Guarded(RunOutOfMemory);
    EXPECT_EQ(CallsUnderWay(), before);
}

} // namespace
