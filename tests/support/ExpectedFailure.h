#pragma once

#include "interface/Identifiers.h"
#include "tests/support/ErrorRecord.h"

#include <gtest/gtest.h>

#include <functional>

/// Compares the code and the record of a call with the required ones. For methods of both interfaces the record has the
/// identifier of the first one.
inline void ExpectRecord(const Raised& raised, HRESULT code, const std::wstring& source,
                         const std::wstring& description, const std::wstring& helpFile = L"") {
    EXPECT_EQ(raised.code, code) << std::hex << "0x" << static_cast<unsigned>(raised.code);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, source);
    EXPECT_EQ(raised.record->description, description);
    EXPECT_EQ(raised.record->helpFile, helpFile);
    EXPECT_EQ(raised.record->helpContext, 0U);
    EXPECT_TRUE(raised.record->guid == IID_IQMVCalculator);
}

/// A call that must fail, and the failure that its caller must get.
struct ExpectedFailure {
    const char* how;
    std::function<Raised()> action;
    HRESULT code;
    const wchar_t* source;
    const wchar_t* description;
    const wchar_t* helpFile;
};

/// Makes the call.
inline void ExpectRecord(const ExpectedFailure& expected) {
    SCOPED_TRACE(expected.how);
    ExpectRecord(expected.action(), expected.code, expected.source, expected.description, expected.helpFile);
    EXPECT_FALSE(TakeErrorRecord()) << "GetErrorInfo must have removed the record";
}
