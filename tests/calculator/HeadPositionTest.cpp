#include "calculator/CQMVCalculator.h"
#include "interface/ErrorCodes.h"
#include "server/CreatableObjects.h"
#include "tests/support/PreparedCalculator.h"

#include <cmath>

using namespace qmv40;

namespace {

class HeadPosition : public PreparedCalculator {};

/// A calculator that shows its stored angles, also while the position is unknown.
class OpenCalculator : public CQMVCalculator {
public:
    using CQMVCalculator::currentA;
    using CQMVCalculator::currentB;

protected:
    ~OpenCalculator() = default;
};

TEST_F(HeadPosition, OfANewObjectIsUnknown) {
    const auto calculator = CreateCalculator();
    double a = 1.25;
    double b = 2.5;
    EXPECT_EQ(calculator->GetCurrentHeadPosition(&a, &b), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(a, 1.25) << "outputs are written on success only";
    EXPECT_EQ(b, 2.5);
}

TEST_F(HeadPosition, IsReturnedAsItWasSetWithoutRounding) {
    const auto calculator = CreateCalculator();
    for (double a = 0.0; a <= 90.0; a += 15.0) {
        for (double b = -180.0; b <= 180.0; b += 15.0) {
            EXPECT_EQ(calculator->SetCurrentHeadPosition(a, b), S_OK);
            EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{a, b}));
        }
    }
}

TEST_F(HeadPosition, NeedsNoGeometry) {
    const auto calculator = CreateCalculator();
    EXPECT_EQ(calculator->SetCurrentHeadPosition(45.0, -180.0), S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{45.0, -180.0}));
}

// After a refused position the head's position is in doubt, so that planning fails too.
TEST_F(HeadPosition, IsUnknownAfterARefusalUntilTheNextSuccess) {
    const auto calculator = At(45.0, 0.0);
    EXPECT_EQ(calculator->SetCurrentHeadPosition(10.0, 0.0), QMV_E_INVALID_TARGET);
    EXPECT_EQ(PositionCode(*calculator.Get()), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(Plan(*calculator.Get(), 0.0, 0.0).code, QMV_E_POSITION_UNKNOWN);
    XYZData start{};
    EXPECT_EQ(calculator->GetStartPosition(&start), QMV_E_POSITION_UNKNOWN);

    EXPECT_EQ(calculator->SetCurrentHeadPosition(30.0, 15.0), S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{30.0, 15.0}));
    EXPECT_EQ(Plan(*calculator.Get(), 0.0, 0.0).code, S_OK);
}

TEST_F(HeadPosition, KeepsItsStoredAnglesAfterARefusal) {
    StandaloneObject<OpenCalculator> calculator;
    ASSERT_EQ(calculator.SetCurrentHeadPosition(45.0, -30.0), S_OK);
    ASSERT_EQ(calculator.SetCurrentHeadPosition(10.0, 0.0), QMV_E_INVALID_TARGET);
    EXPECT_EQ(calculator.currentA, 45.0);
    EXPECT_EQ(calculator.currentB, -30.0);
}

TEST_F(HeadPosition, BecomesUnknownByEveryKindOfRefusal) {
    const struct {
        double a, b;
    } refused[] = {{-1.0, 0.0}, {91.0, 0.0}, {0.0, -181.0}, {0.0, 181.0}, {1.0, 0.0}, {0.0, 1.0}, {std::nan(""), 0.0}};
    for (const auto& [a, b] : refused) {
        const auto calculator = CreateCalculator();
        EXPECT_EQ(calculator->SetCurrentHeadPosition(15.0, 15.0), S_OK);
        EXPECT_EQ(calculator->SetCurrentHeadPosition(a, b), QMV_E_INVALID_TARGET);
        EXPECT_EQ(PositionCode(*calculator.Get()), QMV_E_POSITION_UNKNOWN);
    }
}

TEST_F(HeadPosition, IsTheRoundedTargetAfterAMove) {
    const auto calculator = At(0.0, 0.0);
    EXPECT_EQ(Plan(*calculator.Get(), 45.4, -89.6).code, S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{45.0, -90.0}));
}

TEST_F(HeadPosition, DoesNotChangeWhenATargetIsRefused) {
    const auto calculator = At(30.0, 60.0);
    EXPECT_EQ(Plan(*calculator.Get(), 7.0, 0.0).code, QMV_E_INVALID_TARGET);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{30.0, 60.0}))
        << "only a refused SetCurrentHeadPosition makes it unknown";
}

// GetStartPosition plans from the current position to itself, and so rounds the stored angles. This is required. The
// only stored angle that rounding changes is the negative zero.
TEST_F(HeadPosition, IsRoundedByGetStartPosition) {
    const auto calculator = At(-0.0, -0.0);
    EXPECT_TRUE(std::signbit(CurrentPosition(*calculator.Get()).a));
    EXPECT_TRUE(std::signbit(CurrentPosition(*calculator.Get()).b));
    XYZData start{};
    EXPECT_EQ(calculator->GetStartPosition(&start), S_OK);
    EXPECT_FALSE(std::signbit(CurrentPosition(*calculator.Get()).a));
    EXPECT_FALSE(std::signbit(CurrentPosition(*calculator.Get()).b));
}

TEST_F(HeadPosition, IsSeparateInEachObject) {
    const auto one = CreateCalculator();
    const auto other = CreateCalculator();
    EXPECT_EQ(one->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    EXPECT_EQ(PositionCode(*other.Get()), QMV_E_POSITION_UNKNOWN);
    EXPECT_EQ(other->SetCurrentHeadPosition(90.0, 180.0), S_OK);
    EXPECT_EQ(CurrentPosition(*one.Get()), (Position{15.0, 30.0}));
}

} // namespace
