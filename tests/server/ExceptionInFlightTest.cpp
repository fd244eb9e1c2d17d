#include "interface/ErrorCodes.h"
#include "tests/server/Client.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/Unwinding.h"

#include <cstring>

/// A host that calls while an exception of its own is on its way up, and a component that has a compiler's runtime of
/// its own. (std::uncaught_exceptions is then the one thing that is not kept: it counts down with every code caught.)

namespace {

class ExceptionInFlight : public Client {};

TEST_F(ExceptionInFlight, ChangesNoResult) {
    const auto calculator = At(15.0, 30.0);
    RequiredMoves expected{};
    ASSERT_EQ(calculator->CalculateMove(60.0, -90.0, &expected), S_OK);
    ASSERT_EQ(calculator->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    RequiredMoves moves{};
    HRESULT planned = E_UNEXPECTED;
    WhileUnwinding([&] { planned = calculator->CalculateMove(60.0, -90.0, &moves); });
    EXPECT_EQ(planned, S_OK);
    EXPECT_EQ(std::memcmp(&moves, &expected, sizeof moves), 0);
}

TEST_F(ExceptionInFlight, LeavesTheDestructorToCatchWhatCalculateMoveThrows) {
    if (!catchesWhatIsThrown) GTEST_SKIP();
    const auto calculator = server.Create();
    RequiredMoves moves{};
    for (int i = 0; i < 3; ++i) {
        Raised raised;
        WhileUnwinding([&] { raised = RaisedBy([&] { calculator->CalculateMove(0.0, 0.0, &moves); }); });
        EXPECT_EQ(raised.code, QMV_E_NO_HEAD_GEOMETRY);
        ASSERT_TRUE(raised.record);
        EXPECT_EQ(raised.record->description, L"Head Geometry has not been supplied and/or loaded");
    }
}

TEST_F(ExceptionInFlight, IsNoneOfTheMethodsThatReturnTheirFailures) {
    const auto calculator = server.Create();
    double angle = 0.0;
    HRESULT code = S_OK;
    WhileUnwinding([&] { code = calculator->GetCurrentHeadPosition(&angle, &angle); });
    EXPECT_EQ(code, QMV_E_POSITION_UNKNOWN);
}

} // namespace
