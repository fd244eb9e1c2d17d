#pragma once

#include "interface/Identifiers.h"
#include "tests/support/ErrorRecord.h"

#include <gtest/gtest.h>

#include <functional>

/// A call that must fail, and all that its caller must find then.
struct ExpectedFailure {
    const char* how;
    std::function<Raised()> action;
    HRESULT code;
    const wchar_t* source;
    const wchar_t* description;
    const wchar_t* helpFile;
};

/// Makes the call. Whichever interface it belongs to, the record carries the first one's identifier.
inline void ExpectRecord(const ExpectedFailure& expected) {
    SCOPED_TRACE(expected.how);
    const Raised raised = expected.action();
    EXPECT_EQ(raised.code, expected.code) << std::hex << "0x" << static_cast<unsigned>(raised.code);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, expected.source);
    EXPECT_EQ(raised.record->description, expected.description);
    EXPECT_EQ(raised.record->helpFile, expected.helpFile);
    EXPECT_EQ(raised.record->helpContext, 0U);
    EXPECT_TRUE(raised.record->guid == IID_IQMVCalculator);
    EXPECT_FALSE(TakeErrorRecord()) << "it is there once";
}
