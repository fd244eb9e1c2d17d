#include "check/IdealHead.h"

#include <gtest/gtest.h>

namespace {

using check::HeadModel;
using check::LeverSide;
using check::LeverState;

TEST(HeadModel, PutsTheCupOnThePegWhereTheWorkedNumbersSay) {
    const struct {
        HeadAngles angles;
        double x, y, z;
        const char* why;
    } cases[] = {
        {{0.0, 0.0}, 6.95, -24.0, 11.5, "the pole sphere less the drive cup's offset"},
        {{0.0, 90.0}, 24.0, 6.95, 11.5, "turned a quarter, X towards Y"},
        {{90.0, 0.0}, 6.95, 11.5, 24.0, "tilted: what was below is in front, what was in front is above"},
        {{30.0, -45.0}, -5.7167, -15.5455, 21.9593, "the example of the conventions, before"},
        {{0.0, -45.0}, -12.0562, -21.8850, 11.5, "after its first arc"},
        {{45.0, 90.0}, 8.8388, 6.9500, 25.1023, "after its last arc"},
    };
    const HeadModel head = IdealHead();
    for (const auto& each : cases) {
        SCOPED_TRACE(each.why);
        EXPECT_TRUE(IsAt({each.x, each.y, each.z}, head.EngagementPosition(each.angles), printedDecimals));
    }
}

TEST(HeadModel, KeepsTheCupOnThePegWheneverTheMachineIsAtTheEngagementPosition) {
    const HeadModel head = IdealHead(-1.35, {87.3, 640.9, -712.4});
    for (double a = 0.0; a <= 90.0; a += 7.5) {
        for (double b = -180.0; b <= 180.0; b += 22.5) {
            const CMaVector cup = head.EngagementPosition({a, b}) + head.DriveCup({a, b});
            EXPECT_LE(check::Distance(cup, head.PoleSphere()), rounding) << a << ' ' << b;
        }
    }
}

TEST(HeadModel, ApproachesThePegFromTenMillimetresAgainstTheApproachDirection) {
    const check::ContactLine upright = IdealHead().PegLine({0.0, 0.0});
    EXPECT_TRUE(IsAt({6.95, -34.0, 11.5}, upright.ApproachPoint(), rounding));
    // Tilted to 90 the cup faces down: the machine comes from above.
    const check::ContactLine tilted = IdealHead().PegLine({90.0, 0.0});
    EXPECT_TRUE(IsAt({6.95, 11.5, 34.0}, tilted.ApproachPoint(), rounding));
}

TEST(HeadModel, HasTheLeversWhereTheConventionsSay) {
    const HeadModel head = IdealHead();
    EXPECT_TRUE(IsAt({30.3, -19.3, -36.55}, head.LeverBall(LeverSide::Plus, LeverState::Locked), rounding));
    EXPECT_TRUE(IsAt({30.3, 19.3, -36.55}, head.LeverBall(LeverSide::Plus, LeverState::Unlocked), rounding));
    EXPECT_TRUE(IsAt({-30.3, -19.3, -36.55}, head.LeverBall(LeverSide::Minus, LeverState::Locked), rounding));
    EXPECT_TRUE(IsAt({-30.3, 19.3, -36.55}, head.LeverBall(LeverSide::Minus, LeverState::Unlocked), rounding));
    EXPECT_TRUE(
        IsAt({30.3, -24.3, -36.55}, head.LeverLine(LeverSide::Plus, LeverState::Locked).ApproachPoint(), rounding));
    EXPECT_TRUE(
        IsAt({-30.3, 24.3, -36.55}, head.LeverLine(LeverSide::Minus, LeverState::Unlocked).ApproachPoint(), rounding));
    EXPECT_TRUE(IsAt({0.0, 0.0, -32.25}, head.SwingCentre(), rounding));
    EXPECT_DOUBLE_EQ(35.0, head.SafeHeight());
}

TEST(HeadModel, TurnsEverythingButThePoleWithTheMounting) {
    const HeadModel turned = IdealHead(90.0, {100.0, 200.0, 300.0});
    EXPECT_TRUE(IsAt({100.0, 200.0, 300.0}, turned.PoleSphere(), rounding));
    EXPECT_TRUE(IsAt({124.0, 206.95, 311.5}, turned.EngagementPosition({0.0, 0.0}), rounding));
    EXPECT_TRUE(IsAt({119.3, 230.3, 263.45}, turned.LeverBall(LeverSide::Plus, LeverState::Locked), rounding));
    EXPECT_TRUE(IsAt({0.0, -1.0, 0.0}, turned.TurnOfA(1.0, 0.0).axis, rounding));
    EXPECT_TRUE(IsAt({0.0, 1.0, 0.0}, turned.LeverPush(LeverSide::Plus, LeverState::Locked).axis, rounding));
}

TEST(HeadModel, PresentsTheLeverThatStylusOrCupPointAwayFrom) {
    const struct {
        HeadAngles angles;
        LeverSide side;
        const char* why;
    } cases[] = {
        {{0.0, 90.0}, LeverSide::Minus, "upright, B positive"},
        {{0.0, -90.0}, LeverSide::Plus, "upright, B negative"},
        {{45.0, 90.0}, LeverSide::Plus, "tilted, B positive"},
        {{45.0, -90.0}, LeverSide::Minus, "tilted, B negative"},
        {{0.0, 0.0}, LeverSide::Plus, "B = 0 counts as negative"},
        {{15.0, 0.0}, LeverSide::Minus, "B = 0 counts as negative"},
        {{15.0, 180.0}, LeverSide::Plus, "one orientation, and the one lever"},
        {{15.0, -180.0}, LeverSide::Minus, "the same orientation, and the other"},
        {{1e-13, 90.0}, LeverSide::Minus, "upright but for rounding"},
        {{15.0, 1e-13}, LeverSide::Minus, "B = 0 but for rounding"},
    };
    for (const auto& each : cases) EXPECT_EQ(each.side, HeadModel::LeverInReach(each.angles)) << each.why;
}

} // namespace
