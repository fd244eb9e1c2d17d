#include "tests/server/Client.h"
#include "tests/support/Failures.h"
#include "tests/support/Unwinding.h"

#include <cstring>

/// A host calls the component in a destructor while the stack is unwound for the host's own exception. The component
/// has its own copy of the compiler's runtime. (Only std::uncaught_exceptions is wrong then: it counts down with every
/// caught code.)

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

TEST_F(ExceptionInFlight, CanBeFollowedByACaughtCodeOfCalculateMove) {
    if (!catchesWhatIsThrown) GTEST_SKIP();
    const auto calculator = server.Create();
    RequiredMoves moves{};
    for (int i = 0; i < 3; ++i) {
        Raised raised;
        WhileUnwinding([&] { raised = RaisedBy([&] { calculator->CalculateMove(0.0, 0.0, &moves); }); });
        ExpectFailure(raised, failures::noGeometry);
    }
}

TEST_F(ExceptionInFlight, DoesNotAffectReturnedFailures) {
    const auto calculator = server.Create();
    double angle = 0.0;
    HRESULT code = S_OK;
    WhileUnwinding([&] { code = calculator->GetCurrentHeadPosition(&angle, &angle); });
    EXPECT_EQ(code, QMV_E_POSITION_UNKNOWN);
}

} // namespace
