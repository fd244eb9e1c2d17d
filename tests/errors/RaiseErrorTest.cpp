#include "errors/RaiseError.h"
#include "interface/Identifiers.h"
#include "tests/support/Failures.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

using namespace qmv40;

namespace {

constexpr const wchar_t* aSource = L"RoundThePole::HeadCentre";
constexpr const wchar_t* aDescription = L"Getting Positive Lever Centre.";

TEST(RaiseError, ThrowsTheCode) {
    try {
        RaiseError(QMV_E_INVALID_QUADRANT, aSource, aDescription);
    } catch (const HRESULT thrown) {
        EXPECT_EQ(thrown, QMV_E_INVALID_QUADRANT);
    } catch (...) {
        FAIL() << "something other than an HRESULT was thrown";
    }
}

TEST(RaiseError, RecordsAComponentCodeWithAnEmptyHelpFile) {
    const Raised raised = RaisedBy([] { RaiseError(QMV_E_READ_FROM_FILE, aSource, aDescription); });
    ExpectFailure(raised, {QMV_E_READ_FROM_FILE, aSource, aDescription});
}

TEST(RaiseError, RecordsAPlatformCodeWithAllTextsOfTheContext) {
    ErrorContext context{aSource};
    context.description = aDescription;
    const Raised raised = RaisedBy([&] { RaiseError(DISP_E_BADINDEX, context); });
    ExpectFailure(raised, {DISP_E_BADINDEX, aSource, aDescription, L"Unspecified"});
}

TEST(RaiseError, RecordsAllFiveArguments) {
    const std::wstring longText(5000, L'x');
    const struct {
        const char* why;
        HRESULT code;
        std::wstring source, description, helpFile;
        DWORD helpContext;
    } cases[] = {
        {"everything set", E_FAIL, L"A::B", L"C", L"D.hlp", 4711},
        {"everything empty", QMV_E_INVALID_TARGET, L"", L"", L"", 0},
        {"long texts", E_INVALIDARG, longText, longText + L'y', longText + L'z', 0xFFFFFFFFU},
        {"text beyond ASCII", QMV_E_TOO_FEW_POINTS, L"K\u00F6pfe::\u03B1", L"\u00B5m", L"\u65E5", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const ErrorContext context{c.source.c_str(), c.description.c_str(), c.helpFile.c_str(), c.helpContext};
        const Raised raised = RaisedBy([&] { RaiseError(c.code, context); });
        EXPECT_EQ(raised.code, c.code);
        ASSERT_TRUE(raised.record);
        EXPECT_EQ(raised.record->source, c.source);
        EXPECT_EQ(raised.record->description, c.description);
        EXPECT_EQ(raised.record->helpFile, c.helpFile);
        EXPECT_EQ(raised.record->helpContext, c.helpContext);
    }
}

TEST(RaiseError, ReplacesTheRecordOfAnEarlierFailure) {
    const Raised raised = RaisedBy([] {
        try {
            RaiseError(E_FAIL, L"first", L"first");
        } catch (const HRESULT) {
            RaiseError(E_UNEXPECTED, L"second", L"second");
        }
    });
    EXPECT_EQ(raised.code, E_UNEXPECTED);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, L"second");
    EXPECT_FALSE(TakeErrorRecord()) << "GetErrorInfo must have removed the record";
}

TEST(RaiseError, DoesNotChangeTheRecordsOfOtherThreads) {
    Raised elsewhere;
    const Raised here = RaisedBy([&] {
        try {
            RaiseError(E_FAIL, L"here", L"here");
        } catch (const HRESULT) {
            std::thread([&] { elsewhere = RaisedBy([] { RaiseError(E_UNEXPECTED, L"there", L"there"); }); }).join();
            throw;
        }
    });
    ASSERT_TRUE(here.record);
    EXPECT_EQ(here.record->source, L"here");
    ASSERT_TRUE(elsewhere.record);
    EXPECT_EQ(elsewhere.record->source, L"there");
}

TEST(RaiseIfFailed, RaisesEveryFailureAndNoSuccess) {
    const ErrorContext context{aSource};
    for (const HRESULT success : {S_OK, S_FALSE, HRESULT{0x7FFFFFFF}}) {
        const Raised raised = RaisedBy([&] { RaiseIfFailed(success, context); });
        EXPECT_EQ(raised.code, S_OK);
        EXPECT_FALSE(raised.record);
    }
    for (const HRESULT failure : {E_FAIL, E_OUTOFMEMORY, DISP_E_BADINDEX, HRESULT{-1}}) {
        const Raised raised = RaisedBy([&] { RaiseIfFailed(failure, context); });
        EXPECT_EQ(raised.code, failure);
        ASSERT_TRUE(raised.record);
        EXPECT_EQ(raised.record->description, L"Unspecified");
        EXPECT_EQ(raised.record->helpFile, L"Unspecified");
    }
}

TEST(ErrorContext, HasUnspecifiedTextsAtFirst) {
    const ErrorContext context{aSource};
    EXPECT_STREQ(context.source, aSource);
    EXPECT_STREQ(context.description, L"Unspecified");
    EXPECT_STREQ(context.helpFile, L"Unspecified");
    EXPECT_EQ(context.helpContext, 0U);
}

TEST(ErrorCodes, AreTheRequiredNumbers) {
    const struct {
        HRESULT code;
        unsigned number;
    } codes[] = {
        {QMV_E_READ_FROM_FILE, 0x8A000001U},         {QMV_E_WRITE_TO_FILE, 0x8A000002U},
        {QMV_E_NO_HEAD_GEOMETRY, 0x8A000003U},       {QMV_E_POSITION_UNKNOWN, 0x8A000004U},
        {QMV_E_TOO_FEW_POINTS, 0x8A000009U},         {QMV_E_FIXED_AXIS_MOVED, 0x8A00000AU},
        {QMV_E_INVALID_QUADRANT, 0x8A00000BU},       {QMV_E_GEOMETRY_IMPOSSIBLE, 0x8A00000CU},
        {QMV_E_GEOMETRY_LIMIT_REACHED, 0x8A00000DU}, {QMV_E_INVALID_TARGET, 0x8A00000EU},
        {QMV_E_OBJECT_NOT_CREATED, 0x80000005U},
    };
    for (const auto& [code, number] : codes) {
        EXPECT_EQ(static_cast<unsigned>(code), number);
        EXPECT_TRUE(FAILED(code));
    }
}

} // namespace
