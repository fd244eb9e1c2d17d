#include "interface/ErrorCodes.h"
#include "tests/support/PreparedCalculator.h"
#include "tests/support/ReferenceHeads.h"

#include <algorithm>
#include <cstddef>

using namespace qmv40;

namespace {

constexpr double untouched = 1234.5;

RequiredMoves UntouchedMoves() {
    RequiredMoves moves;
    std::fill_n(reinterpret_cast<double*>(&moves), numbersInAPlan, untouched);
    return moves;
}

std::size_t Untouched(const RequiredMoves& moves) {
    const auto numbers = NumbersOf(moves);
    return static_cast<std::size_t>(std::count(numbers.begin(), numbers.end(), untouched));
}

class Moves : public PreparedCalculator {};

TEST_F(Moves, NeedAGeometryFirstAndThenAPosition) {
    const struct {
        const char* why;
        bool withGeometry, withPosition;
        HRESULT code;
    } cases[] = {
        {"neither", false, false, QMV_E_NO_HEAD_GEOMETRY},
        {"no geometry", false, true, QMV_E_NO_HEAD_GEOMETRY},
        {"no position", true, false, QMV_E_POSITION_UNKNOWN},
        {"both", true, true, S_OK},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const auto calculator = c.withGeometry ? WithGeometry() : CreateCalculator();
        if (c.withPosition) {
            EXPECT_EQ(calculator->SetCurrentHeadPosition(0.0, 0.0), S_OK);
        }
        EXPECT_EQ(Plan(*calculator.Get(), 45.0, 90.0).code, c.code);
        XYZData start{untouched, untouched, untouched};
        EXPECT_EQ(calculator->GetStartPosition(&start), c.code);
        if (FAILED(c.code)) {
            EXPECT_EQ(start, (XYZData{untouched, untouched, untouched}));
        }
    }
}

TEST_F(Moves, NeedAGeometryBeforeTheTargetIsChecked) {
    EXPECT_EQ(Plan(*CreateCalculator().Get(), 7.0, 999.0).code, QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(Plan(*WithGeometry().Get(), 7.0, 999.0).code, QMV_E_POSITION_UNKNOWN);
}

// Unlike the other seven methods, CalculateMove throws its failure code instead of returning it. This is required.
TEST_F(Moves, FailByThrowingTheCode) {
    RequiredMoves moves{};
    EXPECT_THROW(CreateCalculator()->CalculateMove(0.0, 0.0, &moves), HRESULT);
}

TEST_F(Moves, DoNotChangeTheRecordWhenTheyAreRefused) {
    const auto calculator = At(15.0, 30.0);
    RequiredMoves moves = UntouchedMoves();
    EXPECT_EQ(Plan(*calculator.Get(), 7.0, 0.0, &moves).code, QMV_E_INVALID_TARGET);
    EXPECT_EQ(Untouched(moves), numbersInAPlan);
}

TEST_F(Moves, FromAPositionToItselfFillEveryField) {
    for (const auto& [a, b] : {std::pair{0.0, 0.0}, {45.0, 90.0}, {90.0, -180.0}, {90.0, 180.0}}) {
        SCOPED_TRACE(testing::Message() << a << ", " << b);
        const auto calculator = At(a, b);
        RequiredMoves moves = UntouchedMoves();
        EXPECT_EQ(calculator->CalculateMove(a, b, &moves), S_OK);
        EXPECT_EQ(Untouched(moves), 0U);
        EXPECT_EQ(moves.MoveToBPosition.RotationAngle, 0.0);
        EXPECT_EQ(moves.IntermediateAPosition.RotationAngle, a);
        EXPECT_EQ(moves.MoveToAPosition.RotationAngle, -a);
    }
}

TEST_F(Moves, AreTheSameForTargetsWithTheSameRounding) {
    RequiredMoves exact{};
    RequiredMoves rounded{};
    ASSERT_EQ(At(15.0, 30.0)->CalculateMove(45.0, -90.0, &exact), S_OK);
    ASSERT_EQ(At(15.0, 30.0)->CalculateMove(44.5, -90.4, &rounded), S_OK);
    EXPECT_EQ(NumbersOf(exact), NumbersOf(rounded));
}

TEST_F(Moves, PlannedOneAfterTheOtherMakeATour) {
    const auto touring = At(0.0, 0.0);
    const auto starting = At(0.0, 0.0);
    constexpr std::pair<double, double> stops[] = {{45.0, 90.0}, {90.0, -180.0}, {0.0, 180.0}, {15.0, -15.0}};
    for (const auto& [a, b] : stops) {
        SCOPED_TRACE(testing::Message() << a << ", " << b);
        const Position from = CurrentPosition(*touring.Get());
        ASSERT_EQ(starting->SetCurrentHeadPosition(from.a, from.b), S_OK);
        RequiredMoves onTour{};
        RequiredMoves alone{};
        ASSERT_EQ(touring->CalculateMove(a, b, &onTour), S_OK);
        ASSERT_EQ(starting->CalculateMove(a, b, &alone), S_OK);
        EXPECT_EQ(NumbersOf(onTour), NumbersOf(alone));
    }
}

TEST_F(Moves, BeginAtTheStartPosition) {
    for (double a = 0.0; a <= 90.0; a += 45.0) {
        for (double b = -180.0; b <= 180.0; b += 45.0) {
            SCOPED_TRACE(testing::Message() << a << ", " << b);
            const auto calculator = At(a, b);
            XYZData start{};
            EXPECT_EQ(calculator->GetStartPosition(&start), S_OK);
            EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{a, b}));
            RequiredMoves moves{};
            EXPECT_EQ(calculator->CalculateMove(a, b, &moves), S_OK);
            EXPECT_EQ(start, moves.ApproachUnLockLever);
            EXPECT_EQ(calculator->CalculateMove(90.0 - a, -b, &moves), S_OK);
            EXPECT_EQ(start, moves.ApproachUnLockLever) << "for every target";
        }
    }
}

} // namespace
