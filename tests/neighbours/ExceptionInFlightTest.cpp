#include "interface/ErrorCodes.h"
#include "tests/neighbours/Neighbour.h"
#include "tests/support/Calculator.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/Unwinding.h"

#include <exception>

/// A host calls the component in a destructor while the stack is unwound for the host's own exception.

namespace {

class ExceptionInFlight : public Neighbour {};

TEST_F(ExceptionInFlight, ChangesNothing) {
    Results actual;
    int inFlight = 0;
    WhileUnwinding([&] {
        inFlight = std::uncaught_exceptions();
        actual = job.Do();
    });
    EXPECT_EQ(inFlight, 1);
    EXPECT_EQ(std::uncaught_exceptions(), 0);
    ExpectSame(actual, expected);
}

// The destructor must catch the code of CalculateMove: an exception that leaves a destructor ends the program.
TEST_F(ExceptionInFlight, CanBeFollowedByACaughtCodeOfCalculateMove) {
    const auto calculator = CreateCalculator();
    RequiredMoves moves{};
    HRESULT caught = S_OK;
    WhileUnwinding([&] {
        try {
            calculator->CalculateMove(0.0, 0.0, &moves);
        } catch (const HRESULT code) {
            caught = code;
        }
    });
    EXPECT_EQ(caught, QMV_E_NO_HEAD_GEOMETRY);
    const auto record = TakeErrorRecord();
    ASSERT_TRUE(record);
    EXPECT_EQ(record->description, L"Head Geometry has not been supplied and/or loaded");
}

TEST_F(ExceptionInFlight, CanBeFollowedByOthersInItsHandler) {
    const auto calculator = CreateCalculator();
    RequiredMoves moves{};
    for (int i = 0; i < 3; ++i) {
        try {
            calculator->CalculateMove(0.0, 0.0, &moves);
            FAIL() << "nothing was thrown";
        } catch (const HRESULT outer) {
            EXPECT_EQ(outer, QMV_E_NO_HEAD_GEOMETRY);
            ExpectSame(job.Do(), expected); // calls that throw and are caught inside
        }
    }
    EXPECT_EQ(std::uncaught_exceptions(), 0);
}

} // namespace
