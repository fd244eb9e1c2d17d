#include "tests/support/IdealHead.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

TEST(HeadModel, HasTheEngagementPositionsComputedByHand) {
    const struct {
        model::HeadAngles angles;
        double x, y, z;
        const char* why;
    } cases[] = {
        {{0.0, 0.0}, 6.95, -24.0, 11.5, "the pole sphere minus the drive cup's offset"},
        {{0.0, 90.0}, 24.0, 6.95, 11.5, "B turns by 90 degrees, X towards Y"},
        {{90.0, 0.0}, 6.95, 11.5, 24.0, "A turns by 90 degrees: -Z becomes -Y, -Y becomes +Z"},
        {{30.0, -45.0}, -5.7167, -15.5455, 21.9593, "docs/conventions.md: before the first arc"},
        {{0.0, -45.0}, -12.0562, -21.8850, 11.5, "docs/conventions.md: after the first arc"},
        {{45.0, 90.0}, 8.8388, 6.9500, 25.1023, "docs/conventions.md: after the last arc"},
    };
    const model::HeadModel head = IdealHead();
    for (const auto& each : cases) {
        SCOPED_TRACE(each.why);
        EXPECT_TRUE(IsAt({each.x, each.y, each.z}, head.EngagementPosition(each.angles), printedDecimals));
    }
}

TEST(HeadModel, HasTheCupOnThePegAtTheEngagementPosition) {
    const model::HeadModel head = IdealHead(-1.35, {87.3, 640.9, -712.4});
    for (double a = 0.0; a <= 90.0; a += 7.5) {
        for (double b = -180.0; b <= 180.0; b += 22.5) {
            const model::Vector3 cup = head.EngagementPosition({a, b}) + head.DriveCup({a, b});
            EXPECT_LE(model::Distance(cup, head.PoleSphere()), rounding) << a << ' ' << b;
        }
    }
}

TEST(HeadModel, ApproachesThePegFrom10Millimetres) {
    const model::ContactLine upright = IdealHead().PegLine({0.0, 0.0});
    EXPECT_TRUE(IsAt({6.95, -34.0, 11.5}, upright.ApproachPoint(), rounding));
    // At A = 90 the cup faces down, and the machine approaches from above.
    const model::ContactLine tilted = IdealHead().PegLine({90.0, 0.0});
    EXPECT_TRUE(IsAt({6.95, 11.5, 34.0}, tilted.ApproachPoint(), rounding));
}

TEST(HeadModel, HasTheLeversWhereTheConventionsSay) {
    const model::HeadModel head = IdealHead();
    EXPECT_TRUE(
        IsAt({30.3, -19.3, -36.55}, head.LeverBall(model::LeverSide::Plus, model::LeverState::Locked), rounding));
    EXPECT_TRUE(
        IsAt({30.3, 19.3, -36.55}, head.LeverBall(model::LeverSide::Plus, model::LeverState::Unlocked), rounding));
    EXPECT_TRUE(
        IsAt({-30.3, -19.3, -36.55}, head.LeverBall(model::LeverSide::Minus, model::LeverState::Locked), rounding));
    EXPECT_TRUE(
        IsAt({-30.3, 19.3, -36.55}, head.LeverBall(model::LeverSide::Minus, model::LeverState::Unlocked), rounding));
    EXPECT_TRUE(IsAt({30.3, -24.3, -36.55},
                     head.LeverLine(model::LeverSide::Plus, model::LeverState::Locked).ApproachPoint(), rounding));
    EXPECT_TRUE(IsAt({-30.3, 24.3, -36.55},
                     head.LeverLine(model::LeverSide::Minus, model::LeverState::Unlocked).ApproachPoint(), rounding));
    EXPECT_TRUE(IsAt({0.0, 0.0, -32.25}, head.SwingCentre(), rounding));
    EXPECT_DOUBLE_EQ(35.0, head.SafeHeight());
}

TEST(HeadModel, TurnsEverythingExceptThePoleSphereWithItsMounting) {
    const model::HeadModel turned = IdealHead(90.0, {100.0, 200.0, 300.0});
    EXPECT_TRUE(IsAt({100.0, 200.0, 300.0}, turned.PoleSphere(), rounding));
    EXPECT_TRUE(IsAt({124.0, 206.95, 311.5}, turned.EngagementPosition({0.0, 0.0}), rounding));
    EXPECT_TRUE(
        IsAt({119.3, 230.3, 263.45}, turned.LeverBall(model::LeverSide::Plus, model::LeverState::Locked), rounding));
    EXPECT_TRUE(IsAt({0.0, -1.0, 0.0}, turned.TurnOfA(1.0, 0.0).axis, rounding));
    EXPECT_TRUE(
        IsAt({0.0, 1.0, 0.0}, turned.LeverPush(model::LeverSide::Plus, model::LeverState::Locked).axis, rounding));
}

TEST(HeadModel, HasTheLeverSideOfTheConventions) {
    const struct {
        model::HeadAngles angles;
        model::LeverSide side;
        const char* why;
    } cases[] = {
        {{0.0, 90.0}, model::LeverSide::Minus, "A = 0, B positive"},
        {{0.0, -90.0}, model::LeverSide::Plus, "A = 0, B negative"},
        {{45.0, 90.0}, model::LeverSide::Plus, "A > 0, B positive"},
        {{45.0, -90.0}, model::LeverSide::Minus, "A > 0, B negative"},
        {{0.0, 0.0}, model::LeverSide::Plus, "A = 0: B = 0 counts as negative"},
        {{15.0, 0.0}, model::LeverSide::Minus, "A > 0: B = 0 counts as negative"},
        {{15.0, 180.0}, model::LeverSide::Plus, "B = 180 is positive"},
        {{15.0, -180.0}, model::LeverSide::Minus, "B = -180 is negative, though the orientation is that of 180"},
        {{1e-13, 90.0}, model::LeverSide::Minus, "A = 0 within rounding"},
        {{15.0, 1e-13}, model::LeverSide::Minus, "B = 0 within rounding"},
    };
    for (const auto& each : cases) EXPECT_EQ(each.side, model::HeadModel::LeverInReach(each.angles)) << each.why;
}

} // namespace
