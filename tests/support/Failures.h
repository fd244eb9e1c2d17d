#pragma once

#include "interface/ErrorCodes.h"
#include "interface/Identifiers.h"
#include "tests/support/ErrorRecord.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

/// The code and the texts that the caller of a failed call gets. The help file is the text "Unspecified" if the
/// component raises the failure with an ErrorContext, and empty otherwise: see RaiseError.h.
struct Failure {
    HRESULT code;
    const wchar_t* source;
    const wchar_t* description;
    const wchar_t* helpFile = L"";
};

/// The required failures that several tests compare.
namespace failures {

inline constexpr const wchar_t* planning = L"CQMVCalculator::CalculateMove";
inline constexpr const wchar_t* validatingTarget = L"CQMVCalculator::ValidateMoveTarget";
inline constexpr const wchar_t* validatingArrays = L"RoundThePole::ValidateSafeArrayData";
inline constexpr const wchar_t* unspecified = L"Unspecified";

inline constexpr Failure noPosition{QMV_E_POSITION_UNKNOWN, L"CQMVCalculator::GetCurrentHeadPosition",
                                    L"Current Position is not known"};
inline constexpr Failure noPositionToPlanFrom{QMV_E_POSITION_UNKNOWN, planning, L"Current Position is not known"};
inline constexpr Failure noGeometry{QMV_E_NO_HEAD_GEOMETRY, planning,
                                    L"Head Geometry has not been supplied and/or loaded"};
inline constexpr Failure rangeOfA{QMV_E_INVALID_TARGET, validatingTarget,
                                  L"Invalid A Target Angle, value must be between 0 and 90."};
inline constexpr Failure rangeOfB{QMV_E_INVALID_TARGET, validatingTarget,
                                  L"Invalid B Target Angle, value must be between -180 and 180."};
inline constexpr Failure stepOfA{QMV_E_INVALID_TARGET, validatingTarget,
                                 L"Invalid A Target Angle, value must be a 15 degree interval."};
inline constexpr Failure stepOfB{QMV_E_INVALID_TARGET, validatingTarget,
                                 L"Invalid B Target Angle, value must be a 15 degree interval."};
inline constexpr Failure tooFewA{QMV_E_TOO_FEW_POINTS, validatingArrays, L"Too Few A Axis Points Supplied"};
inline constexpr Failure tooFewB{QMV_E_TOO_FEW_POINTS, validatingArrays, L"Too Few B Axis Points Supplied"};
inline constexpr Failure bMoved{QMV_E_FIXED_AXIS_MOVED, validatingArrays,
                                L"Invalid Data. B Axis Must Remain Fixed During A Axis Data Capture"};
inline constexpr Failure aMoved{QMV_E_FIXED_AXIS_MOVED, validatingArrays,
                                L"Invalid Data. A Axis Must Remain Fixed During B Axis Data Capture"};
inline constexpr Failure arrayOfAnotherShape{DISP_E_BADINDEX, validatingArrays, unspecified, unspecified};
inline constexpr Failure noArray{E_INVALIDARG, validatingArrays, unspecified, unspecified};
inline constexpr Failure noCircle{QMV_E_GEOMETRY_IMPOSSIBLE, L"RoundThePole::FitPointsToACircle",
                                  L"Error Fitting points to a circle", unspecified};
inline constexpr Failure notRead{QMV_E_READ_FROM_FILE, L"RoundThePole::ReadDoubleFromIniFile",
                                 L"Failed To Read from File"};
inline constexpr Failure notWritten{QMV_E_WRITE_TO_FILE, L"RoundThePole::WriteDoubleToIniFile",
                                    L"Failed To Write To File"};

} // namespace failures

/// Compares the code and the record of a call with the required ones. For methods of both interfaces the record has the
/// identifier of the first one.
inline void ExpectFailure(const Raised& raised, const Failure& expected) {
    EXPECT_EQ(raised.code, expected.code) << std::hex << "0x" << static_cast<unsigned>(raised.code);
    ASSERT_TRUE(raised.record);
    EXPECT_EQ(raised.record->source, expected.source);
    EXPECT_EQ(raised.record->description, expected.description);
    EXPECT_EQ(raised.record->helpFile, expected.helpFile);
    EXPECT_EQ(raised.record->helpContext, 0U);
    EXPECT_TRUE(raised.record->guid == IID_IQMVCalculator);
}

/// A call that must fail.
struct FailingCall {
    const char* how;
    std::function<Raised()> action;
    Failure expected;
};

/// Makes the calls and compares the failure of each.
inline void ExpectFailures(const std::vector<FailingCall>& calls) {
    for (const FailingCall& call : calls) {
        SCOPED_TRACE(call.how);
        ExpectFailure(call.action(), call.expected);
        EXPECT_FALSE(TakeErrorRecord()) << "GetErrorInfo must have removed the record";
    }
}
