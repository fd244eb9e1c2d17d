#include "tools/motion/Sampling.h"
#include "tests/support/IdealHead.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

/// An indexing from (90, 0) to (90, 90), of the moves that matter here: unlock, onto the peg, the three arcs, off it.
plans::PlanToCheck Indexing(const model::HeadModel& head) {
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
std::vector<Samples> SweptPath(const model::HeadModel& head, const plans::PlanToCheck& plan,
                               const motion::Spacing& spacing) {
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

TEST_F(Sampling, JoinsTheMovesEndToEnd) {
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

TEST_F(Sampling, FollowsArcsAsCloselyAsAskedForAndStraightMovesByTheirEnds) {
    EXPECT_EQ(2u, path[0].size());
    EXPECT_EQ(35u, path[1].size()) << "135 degrees by 4";
    EXPECT_EQ(24u, path[3].size()) << "90 degrees by 4";
    for (const Samples& move : path) {
        EXPECT_EQ(0.0, move.front().fraction);
        EXPECT_EQ(1.0, move.back().fraction);
    }
}

TEST_F(Sampling, FollowsStraightMovesAsCloselyAsAskedFor) {
    const auto fine = SweptPath(head, Indexing(head), {.millimetres = 1.5});
    // The last one, off the peg: 10 mm.
    const Samples& straight = fine.back();
    ASSERT_EQ(8u, straight.size()) << "seven steps of at most 1.5 mm";
    for (std::size_t i = 1; i < straight.size(); ++i) {
        EXPECT_NEAR(10.0 / 7.0, model::Distance(straight[i - 1].position, straight[i].position), rounding);
    }
    EXPECT_EQ(2u, fine.front().size()) << "a move that goes nowhere has its two ends";
}

TEST_F(Sampling, HasTheCupOffThePegAsSoonAsAStraightMoveLeavesIt) {
    const auto fine = SweptPath(head, Indexing(head), {.millimetres = 1.5});
    const Samples& onto = fine[2];
    const Samples& off = fine.back();
    for (std::size_t i = 0; i + 1 < onto.size(); ++i) EXPECT_FALSE(onto[i].isOnPeg);
    EXPECT_TRUE(onto.back().isOnPeg);
    EXPECT_TRUE(off.front().isOnPeg);
    for (std::size_t i = 1; i < off.size(); ++i) EXPECT_FALSE(off[i].isOnPeg);
}

TEST_F(Sampling, GivesAMistakenMoveNoMoreThanTenThousandSteps) {
    for (const double far : {1e6, 1e300}) {
        plans::PlanToCheck plan = Indexing(head);
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

TEST_F(Sampling, TurnsTheHeadEvenlyAndTheLeverAtTheEndOfItsPush) {
    const Samples& push = path[1];
    EXPECT_EQ(model::LeverState::Locked, push[push.size() - 2].lever);
    EXPECT_EQ(model::LeverState::Unlocked, push.back().lever);
    const Samples& turn = path[4];
    for (const motion::Sample& sample : turn) EXPECT_NEAR(90.0 * sample.fraction, sample.angles.b, rounding);
}

} // namespace
