#include "tools/motion/Sampling.h"
#include "tests/support/IdealHead.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

/// A part of the plan from (90, 0) to (90, 90): unlock, engage with the peg, three arcs, disengage.
plans::Plan Indexing(const model::HeadModel& head) {
    const auto straight = [](plans::MoveId id, const model::Vector3& place) {
        return plans::PlannedMove{id, XYZData{place[0], place[1], place[2]}};
    };
    return {{90.0, 0.0},
            {90.0, 90.0},
            {straight(plans::MoveId::EngageWithUnLockLever, {-30.3, -19.3, -36.55}),
             {plans::MoveId::UnLock, ArcData{-30.3, -2.0, -36.25, -1.0, 0.0, 0.0, -135.0}},
             straight(plans::MoveId::EngageWithPeg, head.EngagementPosition({90.0, 0.0})),
             {plans::MoveId::IntermediateAPosition, ArcData{0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 90.0}},
             {plans::MoveId::MoveToBPosition, ArcData{0.0, 0.0, 0.0, 0.0, 0.0, 1.0, -90.0}},
             {plans::MoveId::MoveToAPosition, ArcData{0.0, 0.0, 0.0, 0.0, -1.0, 0.0, -90.0}},
             straight(plans::MoveId::DisengageFromPeg, head.PegLine({90.0, 90.0}).ApproachPoint())}};
}

using Samples = std::vector<motion::Sample>;

/// The samples of each move of a plan, run from its start.
std::vector<Samples> SweptPath(const model::HeadModel& head, const plans::Plan& plan, const motion::Spacing& spacing) {
    motion::Machine machine(head, plan.from, std::nullopt);
    std::vector<Samples> path;
    for (const plans::PlannedMove& move : plan.moves) {
        path.push_back(motion::SamplesOf(head, machine.Run(move), spacing));
    }
    return path;
}

class Sampling : public testing::Test {
protected:
    const model::HeadModel head = IdealHead();
    const std::vector<Samples> path = SweptPath(head, Indexing(head), {.degrees = 4.0});
};

TEST_F(Sampling, StartsEachMoveWhereTheOneBeforeEnded) {
    ASSERT_EQ(7u, path.size());
    for (std::size_t i = 1; i < path.size(); ++i) {
        const motion::Sample& before = path[i - 1].back();
        const motion::Sample& after = path[i].front();
        EXPECT_LE(model::Distance(before.position, after.position), rounding);
        EXPECT_EQ(before.lever, after.lever);
        EXPECT_EQ(before.isOnPeg, after.isOnPeg);
        EXPECT_EQ(before.angles.a, after.angles.a);
        EXPECT_EQ(before.angles.b, after.angles.b);
    }
}

TEST_F(Sampling, DividesArcsByTheGivenAngle) {
    EXPECT_EQ(2u, path[0].size());
    EXPECT_EQ(35u, path[1].size()) << "34 steps of at most 4 degrees for 135 degrees";
    EXPECT_EQ(24u, path[3].size()) << "23 steps of at most 4 degrees for 90 degrees";
    for (const Samples& move : path) {
        EXPECT_EQ(0.0, move.front().fraction);
        EXPECT_EQ(1.0, move.back().fraction);
    }
}

TEST_F(Sampling, DividesStraightMovesByTheGivenLength) {
    const auto fine = SweptPath(head, Indexing(head), {.millimetres = 1.5});
    // The last move leaves the peg by 10 mm.
    const Samples& straight = fine.back();
    ASSERT_EQ(8u, straight.size()) << "seven steps of at most 1.5 mm";
    for (std::size_t i = 1; i < straight.size(); ++i) {
        EXPECT_NEAR(10.0 / 7.0, model::Distance(straight[i - 1].position, straight[i].position), rounding);
    }
    EXPECT_EQ(2u, fine.front().size()) << "a move of length 0 has two samples";
}

TEST_F(Sampling, HasTheCupOnThePegOnlyAtTheEndOfTheEngagement) {
    const auto fine = SweptPath(head, Indexing(head), {.millimetres = 1.5});
    const Samples& engagement = fine[2];
    const Samples& disengagement = fine.back();
    for (std::size_t i = 0; i + 1 < engagement.size(); ++i) EXPECT_FALSE(engagement[i].isOnPeg);
    EXPECT_TRUE(engagement.back().isOnPeg);
    EXPECT_TRUE(disengagement.front().isOnPeg);
    for (std::size_t i = 1; i < disengagement.size(); ++i) EXPECT_FALSE(disengagement[i].isOnPeg);
}

TEST_F(Sampling, DividesAMoveIntoAtMost10000Steps) {
    for (const double far : {1e6, 1e300}) {
        plans::Plan plan = Indexing(head);
        std::get<XYZData>(plan.moves.back().data).XPosition = far;
        std::get<ArcData>(plan.moves[4].data).RotationAngle = far;
        const auto swept = SweptPath(head, plan, {.millimetres = 1.0});
        EXPECT_EQ(10001u, swept[4].size());
        EXPECT_EQ(10001u, swept.back().size());
        EXPECT_EQ(far, swept.back().back().position.x);
    }
}

TEST_F(Sampling, KeepsTheCupOnThePegWhileTheHeadIsTurned) {
    int samples = 0;
    for (const Samples& move : path) {
        for (const motion::Sample& sample : move) {
            if (!sample.isOnPeg) continue;
            EXPECT_LE(model::Distance(sample.driveCup, head.PoleSphere()), rounding);
            ++samples;
        }
    }
    EXPECT_GE(samples, 70);
}

TEST_F(Sampling, ChangesTheLeverStateAtTheEndOfThePush) {
    const Samples& push = path[1];
    EXPECT_EQ(model::LeverState::Locked, push[push.size() - 2].lever);
    EXPECT_EQ(model::LeverState::Unlocked, push.back().lever);
    const Samples& turn = path[4];
    for (const motion::Sample& sample : turn) EXPECT_NEAR(90.0 * sample.fraction, sample.angles.b, rounding);
}

} // namespace
