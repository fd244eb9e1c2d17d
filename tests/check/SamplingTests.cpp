#include "check/IdealHead.h"
#include "check/Sampling.h"

#include <gtest/gtest.h>

namespace {

using check::MoveId;
using check::Sample;
using check::SweptMove;

/// An indexing from (90, 0) to (90, 90), of the moves that matter here: unlock, onto the peg, the three arcs, off it.
check::PlanToCheck Indexing(const check::HeadModel& head) {
    const auto straight = [](MoveId id, const CMaVector& place) {
        return check::PlannedMove{id, XYZData{place[0], place[1], place[2]}};
    };
    return {{90.0, 0.0},
            {90.0, 90.0},
            {straight(MoveId::EngageWithUnLockLever, {-30.3, -19.3, -36.55}),
             {MoveId::UnLock, ArcData{-30.3, -2.0, -36.25, -1.0, 0.0, 0.0, -135.0}},
             straight(MoveId::EngageWithPeg, head.EngagementPosition({90.0, 0.0})),
             {MoveId::IntermediateAPosition, ArcData{0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 90.0}},
             {MoveId::MoveToBPosition, ArcData{0.0, 0.0, 0.0, 0.0, 0.0, 1.0, -90.0}},
             {MoveId::MoveToAPosition, ArcData{0.0, 0.0, 0.0, 0.0, -1.0, 0.0, -90.0}},
             straight(MoveId::DisengageFromPeg, head.PegLine({90.0, 90.0}).ApproachPoint())}};
}

class Sampling : public testing::Test {
protected:
    const check::HeadModel head = IdealHead();
    const std::vector<SweptMove> path =
        check::SweptPath(head, check::CheckPlan(head, {}, Indexing(head)), {.degrees = 4.0});
};

TEST_F(Sampling, JoinsTheMovesEndToEnd) {
    ASSERT_EQ(7u, path.size());
    for (std::size_t i = 1; i < path.size(); ++i) {
        const Sample& before = path[i - 1].samples.back();
        const Sample& after = path[i].samples.front();
        EXPECT_LE(check::Distance(before.position, after.position), rounding);
        EXPECT_EQ(before.lever, after.lever);
        EXPECT_EQ(before.isOnPeg, after.isOnPeg);
        EXPECT_EQ(before.angles.a, after.angles.a);
        EXPECT_EQ(before.angles.b, after.angles.b);
    }
}

TEST_F(Sampling, FollowsArcsAsCloselyAsAskedForAndStraightMovesByTheirEnds) {
    EXPECT_EQ(2u, path[0].samples.size());
    EXPECT_EQ(35u, path[1].samples.size()) << "135 degrees by 4";
    EXPECT_EQ(24u, path[3].samples.size()) << "90 degrees by 4";
    for (const SweptMove& move : path) {
        EXPECT_EQ(0.0, move.samples.front().fraction);
        EXPECT_EQ(1.0, move.samples.back().fraction);
    }
}

TEST_F(Sampling, FollowsStraightMovesAsCloselyAsAskedFor) {
    const auto fine = check::SweptPath(head, check::CheckPlan(head, {}, Indexing(head)), {.millimetres = 1.5});
    // The last one, off the peg: 10 mm.
    const std::vector<Sample>& straight = fine.back().samples;
    ASSERT_EQ(8u, straight.size()) << "seven steps of at most 1.5 mm";
    for (std::size_t i = 1; i < straight.size(); ++i) {
        EXPECT_NEAR(10.0 / 7.0, check::Distance(straight[i - 1].position, straight[i].position), rounding);
    }
    EXPECT_EQ(2u, fine.front().samples.size()) << "a move that goes nowhere has its two ends";
}

TEST_F(Sampling, HasTheCupOffThePegAsSoonAsAStraightMoveLeavesIt) {
    const auto fine = check::SweptPath(head, check::CheckPlan(head, {}, Indexing(head)), {.millimetres = 1.5});
    const std::vector<Sample>& onto = fine[2].samples;
    const std::vector<Sample>& off = fine.back().samples;
    for (std::size_t i = 0; i + 1 < onto.size(); ++i) EXPECT_FALSE(onto[i].isOnPeg);
    EXPECT_TRUE(onto.back().isOnPeg);
    EXPECT_TRUE(off.front().isOnPeg);
    for (std::size_t i = 1; i < off.size(); ++i) EXPECT_FALSE(off[i].isOnPeg);
}

TEST_F(Sampling, GivesAMistakenMoveNoMoreThanTenThousandSteps) {
    for (const double far : {1e6, 1e300}) {
        check::PlanToCheck plan = Indexing(head);
        std::get<XYZData>(plan.moves.back().data).XPosition = far;
        std::get<ArcData>(plan.moves[4].data).RotationAngle = far;
        const auto swept = check::SweptPath(head, check::CheckPlan(head, {}, plan), {.millimetres = 1.0});
        EXPECT_EQ(10001u, swept[4].samples.size());
        EXPECT_EQ(10001u, swept.back().samples.size());
        EXPECT_EQ(far, swept.back().samples.back().position[0]);
    }
}

TEST_F(Sampling, KeepsTheCupOnThePegWhileTheHeadIsTurned) {
    int samples = 0;
    for (const SweptMove& move : path) {
        for (const Sample& sample : move.samples) {
            if (!sample.isOnPeg) continue;
            EXPECT_LE(check::Distance(sample.driveCup, head.PoleSphere()), rounding);
            ++samples;
        }
    }
    EXPECT_GE(samples, 70);
}

TEST_F(Sampling, TurnsTheHeadEvenlyAndTheLeverAtTheEndOfItsPush) {
    const std::vector<Sample>& push = path[1].samples;
    EXPECT_EQ(check::LeverState::Locked, push[push.size() - 2].lever);
    EXPECT_EQ(check::LeverState::Unlocked, push.back().lever);
    const std::vector<Sample>& turn = path[4].samples;
    for (const Sample& sample : turn) EXPECT_NEAR(90.0 * sample.fraction, sample.angles.b, rounding);
}

} // namespace
