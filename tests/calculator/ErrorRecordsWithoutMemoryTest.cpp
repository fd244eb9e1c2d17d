#include "interface/ErrorCodes.h"
#include "tests/support/FailingAllocations.h"
#include "tests/support/PreparedCalculator.h"

/// Memory runs out while a caller reads the texts of an error record.

namespace {

TEST_F(PreparedCalculator, ReturnsErrorTextsWholeOrOutOfMemory) {
    const auto calculator = CreateCalculator();
    double a = 0.0, b = 0.0;
    long failures = 0;
    for (const auto text : {&IErrorInfo::GetSource, &IErrorInfo::GetDescription, &IErrorInfo::GetHelpFile}) {
        bool wasReached = true;
        for (long n = 0; wasReached; ++n) {
            ASSERT_LT(n, 100);
            ASSERT_EQ(calculator->GetCurrentHeadPosition(&a, &b), QMV_E_POSITION_UNKNOWN);
            BSTR received = nullptr;
            HRESULT given = E_UNEXPECTED;
            FailingAllocations failing(n);
            IErrorInfo* record = nullptr;
            const HRESULT taken = GetErrorInfo(0, &record);
            if (record != nullptr) given = (record->*text)(&received);
            wasReached = failing.Stop();
            ASSERT_EQ(taken, S_OK) << "taking a record needs no memory";
            EXPECT_EQ(given, wasReached ? E_OUTOFMEMORY : S_OK);
            EXPECT_EQ(received == nullptr, wasReached);
            BSTR again = nullptr;
            EXPECT_EQ((record->*text)(&again), S_OK) << "the record must keep the text";
            SysFreeString(received);
            SysFreeString(again);
            record->Release();
            failures += wasReached ? 1 : 0;
        }
    }
    EXPECT_EQ(failures, 3); // each of the three texts takes one allocation
}

} // namespace
