#include "tools/motion/Execution.h"
#include "tests/support/IdealHead.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

using namespace qmv40;

namespace {

plans::PlannedMove StraightTo(const model::Vector3& place) {
    return {plans::MoveId::ApproachPeg, XYZData{place[0], place[1], place[2]}};
}

plans::PlannedMove ArcAbout(const model::Vector3& centre, const model::Vector3& axis, double rotationAngle) {
    return {plans::MoveId::MoveToBPosition,
            ArcData{centre[0], centre[1], centre[2], axis[0], axis[1], axis[2], rotationAngle}};
}

/// Touches the positive lever and pushes it over. The machine does not look at the names of moves.
void Unlock(motion::Machine& machine) {
    machine.Run(StraightTo({30.3, -19.3, -36.55}));
    machine.Run(ArcAbout({30.3, -2.0, -36.25}, {-1.0, 0.0, 0.0}, -135.0));
}

TEST(Execution, TurnsTheHeadAsInTheWorkedExample) {
    const model::HeadModel head = IdealHead();
    motion::Machine machine(head, {30.0, -45.0}, std::nullopt);
    // At these angles a plan would push the other lever. The model accepts either.
    Unlock(machine);
    machine.Run(StraightTo(head.EngagementPosition({30.0, -45.0})));
    ASSERT_TRUE(machine.State().isOnPeg);
    const double half = std::sqrt(0.5);
    const struct {
        model::Vector3 axis;
        double rotationAngle;
        model::Vector3 position;
        model::HeadAngles angles;
    } arcs[] = {
        {{-half, half, 0.0}, 30.0, {-12.0562, -21.8850, 11.5}, {0.0, -45.0}},
        {{0.0, 0.0, 1.0}, -135.0, {24.0, 6.95, 11.5}, {0.0, 90.0}},
        {{0.0, -1.0, 0.0}, -45.0, {8.8388, 6.95, 25.1023}, {45.0, 90.0}},
    };
    for (const auto& arc : arcs) {
        const motion::ExecutedMove move = machine.Run(ArcAbout({0.0, 0.0, 0.0}, arc.axis, arc.rotationAngle));
        EXPECT_TRUE(IsAt(arc.position, *machine.Position(), printedDecimals));
        EXPECT_NEAR(arc.angles.a, machine.State().angles.a, rounding);
        EXPECT_NEAR(arc.angles.b, machine.State().angles.b, rounding);
        EXPECT_LE(move.pulledOff, rounding);
        EXPECT_TRUE(machine.State().isOnPeg);
    }
}

TEST(Execution, PullsTheCupOffThePegWhenTheHeadCannotFollow) {
    const model::HeadModel head = IdealHead();
    motion::Machine machine(head, {0.0, 0.0}, std::nullopt);
    Unlock(machine);
    machine.Run(StraightTo(head.EngagementPosition({0.0, 0.0})));
    // An arc about Y through the sphere: no axis of the head points along Y. After 360 degrees the position is the
    // same.
    const motion::ExecutedMove move = machine.Run(ArcAbout({0.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, 360.0));
    EXPECT_NEAR(0.0, machine.State().angles.a, rounding);
    EXPECT_NEAR(0.0, machine.State().angles.b, rounding);
    // Half-way the machine is on the opposite side of the axis: twice the cup's distance from the axis.
    EXPECT_NEAR(2.0 * std::hypot(6.95, 11.5), move.pulledOff, rounding);
    EXPECT_FALSE(machine.State().isOnPeg);
}

TEST(Execution, DoesNotTurnALockedHead) {
    const model::HeadModel head = IdealHead();
    motion::Machine machine(head, {0.0, 0.0}, std::nullopt);
    machine.Run(StraightTo(head.EngagementPosition({0.0, 0.0})));
    ASSERT_TRUE(machine.State().isOnPeg);
    const motion::ExecutedMove move = machine.Run(ArcAbout({0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 180.0));
    EXPECT_EQ(0.0, machine.State().angles.b);
    EXPECT_NEAR(2.0 * std::hypot(6.95, 24.0), move.pulledOff, rounding);
    EXPECT_FALSE(machine.State().isOnPeg);
}

TEST(Execution, PushesTheLeverOverTheTop) {
    const model::HeadModel head = IdealHead();
    motion::Machine machine(head, {0.0, 0.0}, std::nullopt);
    Unlock(machine);
    EXPECT_EQ(model::LeverState::Unlocked, machine.State().lever);
    // (-17.3, -0.3) from the centre in Y and Z, turned by 135 degrees: (17.0, 17.6) times the square root of 1/2.
    const double half = std::sqrt(0.5);
    EXPECT_TRUE(IsAt({30.3, -2.0 + 17.0 * half, -36.25 + 17.6 * half}, *machine.Position(), rounding));

    machine.Run(StraightTo({30.3, 19.3, -36.55}));
    EXPECT_EQ(model::LeverSide::Plus, machine.State().touchedBall);
    machine.Run(ArcAbout({30.3, 2.0, -36.25}, {1.0, 0.0, 0.0}, -138.0));
    EXPECT_EQ(model::LeverState::Locked, machine.State().lever);
}

TEST(Execution, LeavesTheLeverLockedWhenThePushIsWrong) {
    const model::Vector3 ball{30.3, -19.3, -36.55};
    const model::Vector3 centre{30.3, -2.0, -36.25};
    const model::Vector3 axis{-1.0, 0.0, 0.0};
    const struct {
        model::Vector3 from;
        double rotationAngle;
        const char* why;
    } cases[] = {
        {ball, 135.0, "the wrong way"},
        {ball, -134.9, "not far enough"},
        {{30.3, -19.3, -36.54}, -135.0, "0.01 mm beside the ball"},
        {{30.3, 19.3, -36.55}, -135.0, "at the place of the ball of an unlocked lever"},
    };
    for (const auto& each : cases) {
        const model::HeadModel head = IdealHead();
        motion::Machine machine(head, {0.0, 0.0}, std::nullopt);
        machine.Run(StraightTo(each.from));
        machine.Run(ArcAbout(centre, axis, each.rotationAngle));
        EXPECT_EQ(model::LeverState::Locked, machine.State().lever) << each.why;
    }
}

TEST(Execution, RefusesMovesWithoutFiniteNumbersOrAxis) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(motion::Machine::CanRun(StraightTo({1.0, 2.0, 3.0})));
    EXPECT_FALSE(motion::Machine::CanRun(StraightTo({1.0, nan, 3.0})));
    EXPECT_FALSE(motion::Machine::CanRun(StraightTo({1.0, 2.0, -infinity})));
    EXPECT_TRUE(motion::Machine::CanRun(ArcAbout({0.0, 0.0, 0.0}, {0.0, 0.0, 0.5}, 0.0)));
    EXPECT_FALSE(motion::Machine::CanRun(ArcAbout({0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, 90.0)));
    EXPECT_FALSE(motion::Machine::CanRun(ArcAbout({0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, nan)));
    EXPECT_FALSE(motion::Machine::CanRun(ArcAbout({nan, 0.0, 0.0}, {0.0, 0.0, 1.0}, 90.0)));
}

TEST(Execution, BeginsAtTheFirstMovesEndWhenNoStartIsGiven) {
    const model::HeadModel head = IdealHead();
    motion::Machine unknown(head, {0.0, 0.0}, std::nullopt);
    EXPECT_TRUE(IsAt({1.0, 2.0, 3.0}, unknown.Run(StraightTo({1.0, 2.0, 3.0})).path.Start(), 0.0));
    motion::Machine known(head, {0.0, 0.0}, model::Vector3{7.0, 8.0, 9.0});
    EXPECT_TRUE(IsAt({7.0, 8.0, 9.0}, known.Run(StraightTo({1.0, 2.0, 3.0})).path.Start(), 0.0));
}

} // namespace
