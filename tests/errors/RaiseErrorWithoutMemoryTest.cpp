#include "errors/RaiseError.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/FailingAllocations.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

constexpr long moreThanEnough = 1000;

/// The code that RaiseError throws when its allocation `n` fails. `reached` is false if there is no such allocation.
HRESULT ThrownWithout(long n, FailingAllocations::Extent extent, bool& reached) {
    HRESULT thrown = S_OK;
    FailingAllocations failing(n, extent);
    try {
        RaiseError(QMV_E_INVALID_QUADRANT, L"A::B", L"C");
    } catch (const HRESULT code) {
        thrown = code;
    }
    reached = failing.Stop();
    return thrown;
}

TEST(RaiseError, ThrowsOutOfMemoryWhenItCannotCreateTheRecord) {
    SetErrorInfo(0, nullptr);
    bool reached = false;
    EXPECT_EQ(ThrownWithout(0, FailingAllocations::Extent::AllAfter, reached), E_OUTOFMEMORY);
    EXPECT_TRUE(reached);
    EXPECT_FALSE(TakeErrorRecord());
}

TEST(RaiseError, ThrowsWhicheverAllocationFails) {
    for (const auto extent : {FailingAllocations::Extent::One, FailingAllocations::Extent::AllAfter}) {
        bool reached = true;
        long n = 0;
        for (; reached && n < moreThanEnough; ++n) {
            SCOPED_TRACE(n);
            const HRESULT thrown = ThrownWithout(n, extent, reached);
            EXPECT_TRUE(thrown == E_OUTOFMEMORY || thrown == QMV_E_INVALID_QUADRANT) << thrown;
        }
        ASSERT_FALSE(reached);
        EXPECT_GE(n, 2) << "at least one allocation must have failed";
    }
    const Raised afterwards = RaisedBy([] { RaiseError(E_FAIL, L"D::E", L"F"); });
    EXPECT_EQ(afterwards.code, E_FAIL);
    ASSERT_TRUE(afterwards.record);
    EXPECT_EQ(afterwards.record->source, L"D::E");
}

} // namespace
