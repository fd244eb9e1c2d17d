#include "tests/planning/Planner.h"

#include <cmath>
#include <limits>

namespace {

constexpr double smallest = std::numeric_limits<double>::denorm_min();

struct LeverChoice {
    double a;
    double b;
    int side; ///< 0: the lever at +X, 1: the lever at -X
    const char* why;
};
/// The sign of B decides, and whether A is exactly zero. B = 180 and B = -180 are the same orientation of the head and
/// choose different levers, as required.
const LeverChoice choices[] = {{0.0, 90.0, 1, "A zero, B positive"},
                               {0.0, -90.0, 0, "A zero, B negative"},
                               {45.0, 90.0, 0, "A tilted, B positive"},
                               {45.0, -90.0, 1, "A tilted, B negative"},
                               {0.0, 180.0, 1, "A zero, B at its upper end"},
                               {0.0, -180.0, 0, "A zero, B at its lower end"},
                               {45.0, 180.0, 0, "A tilted, B at its upper end"},
                               {45.0, -180.0, 1, "A tilted, B at its lower end"},
                               {0.0, 0.0, 0, "B zero counts as negative, A zero"},
                               {45.0, 0.0, 1, "B zero counts as negative, A tilted"},
                               {90.0, -0.0, 1, "B minus zero counts as negative"},
                               {-0.0, 90.0, 1, "A minus zero is zero"},
                               {1e-7, 90.0, 0, "a very small A counts as tilted"},
                               {1e-7, -90.0, 1, "a very small A counts as tilted, B negative"},
                               {smallest, 90.0, 0, "the smallest A counts as tilted"},
                               {0.0, smallest, 1, "the smallest B counts as positive"},
                               {0.0, -smallest, 0, "the smallest negative B counts as negative"}};

class LeverMoves : public Planning {
protected:
    /// The result of a query of the head for one side.
    Triple Lever(LeverQuery query, int side) { return AnswerFor(planner.Head(), query, side); }
    RequiredMoves UnlockedAt(double a, double b) {
        planner.StandAt(a, b);
        planner.CalculateUnlockMoves(moves);
        return moves;
    }
    RequiredMoves LockedAt(double a, double b) {
        planner.CalculateLockMoves(moves, a, b);
        return moves;
    }
};

TEST_F(LeverMoves, UnlockAtTheLeverThatTheCurrentAnglesChoose) {
    for (const LeverChoice& c : choices) {
        const double x = UnlockedAt(c.a, c.b).EngageWithUnLockLever.XPosition;
        EXPECT_NEAR(x, workedCentre[0] + (c.side == 0 ? 30.3 : -30.3), workedRounding) << c.why;
    }
}

TEST_F(LeverMoves, LockAtTheLeverThatTheTargetAnglesChoose) {
    for (const LeverChoice& c : choices) {
        // The current angles choose the other one.
        planner.StandAt(c.side == 0 ? 0.0 : 45.0, 90.0);
        const double x = LockedAt(c.a, c.b).EngageWithLockLever.XPosition;
        EXPECT_NEAR(x, workedCentre[0] + (c.side == 0 ? 30.3 : -30.3), workedRounding) << c.why;
    }
}

TEST_F(LeverMoves, GoRoundTheHeadToTheLeverThatTheTargetAnglesChoose) {
    // Seen from the start, the unlocked approach of lever 0 at (30.3, 24.3) is clockwise, that of lever 1
    // counter-clockwise.
    const CMaVector ahead = MaVectorOf(FromCentre(0.0, 50.0, 0.0));
    const double angle = std::atan2(30.3, 24.3) * 180.0 / 3.14159265358979323846;
    for (const LeverChoice& c : choices) {
        planner.StandAt(c.side == 0 ? 0.0 : 45.0, 90.0);
        planner.CalculateRotateToLockLeverMoves(moves, ahead, c.a, c.b);
        EXPECT_NEAR(moves.RotateToLockLever.RotationAngle, c.side == 0 ? angle : -angle, 1e-11) << c.why;
    }
}

TEST_F(LeverMoves, UnlockFromTheLockedBallToAboveTheUnlockedOne) {
    struct Case {
        double a;
        double x;
    };
    for (const Case& c : {Case{0.0, -30.3}, Case{45.0, 30.3}}) {
        UnlockedAt(c.a, 90.0);
        EXPECT_TRUE(AreNear(TripleOf(moves.ApproachUnLockLever), FromCentre(c.x, -24.3, -36.55), workedRounding));
        EXPECT_TRUE(AreNear(TripleOf(moves.EngageWithUnLockLever), FromCentre(c.x, -19.3, -36.55), workedRounding));
        EXPECT_TRUE(AreNear(OriginOf(moves.UnLock), FromCentre(c.x, -2.0, -36.25), workedRounding));
        EXPECT_TRUE(AreNear(TripleOf(moves.DisengageFromUnLockLever), FromCentre(c.x, 19.3, 35.0), workedRounding));
        EXPECT_EQ(moves.DisengageFromUnLockLever.ZPosition, workedSafeZ);
    }
}

TEST_F(LeverMoves, LockFromAboveTheUnlockedBallToTenAboveTheLockedOne) {
    struct Case {
        double a;
        double x;
    };
    for (const Case& c : {Case{0.0, -30.3}, Case{45.0, 30.3}}) {
        LockedAt(c.a, 90.0);
        EXPECT_TRUE(AreNear(TripleOf(moves.MoveToLockLeverAtSafeZ), FromCentre(c.x, 24.3, 35.0), workedRounding));
        EXPECT_EQ(moves.MoveToLockLeverAtSafeZ.ZPosition, workedSafeZ);
        EXPECT_TRUE(AreNear(TripleOf(moves.ApproachLockLever), FromCentre(c.x, 24.3, -36.55), workedRounding));
        EXPECT_TRUE(AreNear(TripleOf(moves.EngageWithLockLever), FromCentre(c.x, 19.3, -36.55), workedRounding));
        EXPECT_TRUE(AreNear(OriginOf(moves.Lock), FromCentre(c.x, 2.0, -36.25), workedRounding));
        // 10 above the locked ball, and not at the safe height: required.
        EXPECT_TRUE(AreNear(TripleOf(moves.DisengageFromLockLever), FromCentre(c.x, -19.3, -26.55), workedRounding));
    }
}

TEST_F(LeverMoves, HaveThePointsOfTheHeadBitForBit) {
    LoadWorkedHead(33.3);
    for (const LeverChoice& c : choices) {
        SCOPED_TRACE(c.why);
        UnlockedAt(c.a, c.b);
        LockedAt(c.a, c.b);
        const Triple locked = Lever(&RoundThePole::LeverLockedPosition, c.side);
        const Triple unlocked = Lever(&RoundThePole::LeverUnlockedPosition, c.side);
        const Triple unlockedApproach = Lever(&RoundThePole::LeverUnlockedApproachPosition, c.side);
        EXPECT_EQ(TripleOf(moves.ApproachUnLockLever), Lever(&RoundThePole::LeverLockedApproachPosition, c.side));
        EXPECT_EQ(TripleOf(moves.EngageWithUnLockLever), locked);
        EXPECT_EQ(OriginOf(moves.UnLock), Lever(&RoundThePole::LeverUnlockingCentreOfRotation, c.side));
        EXPECT_EQ(TripleOf(moves.DisengageFromUnLockLever), (Triple{unlocked[0], unlocked[1], workedSafeZ}));
        EXPECT_EQ(TripleOf(moves.MoveToLockLeverAtSafeZ),
                  (Triple{unlockedApproach[0], unlockedApproach[1], workedSafeZ}));
        EXPECT_EQ(TripleOf(moves.ApproachLockLever), unlockedApproach);
        EXPECT_EQ(TripleOf(moves.EngageWithLockLever), unlocked);
        EXPECT_EQ(OriginOf(moves.Lock), Lever(&RoundThePole::LeverLockingCentreOfRotation, c.side));
        EXPECT_EQ(TripleOf(moves.DisengageFromLockLever), (Triple{locked[0], locked[1], locked[2] + 10.0}));
    }
}

TEST_F(LeverMoves, UnlockAboutTheSecondAxisAndLockAboutTheFirst) {
    for (const double rotation : {0.0, 30.0}) {
        LoadWorkedHead(rotation);
        const Triple first = Lever(&RoundThePole::LeverAxisOfRotation, 0);
        const Triple second = Lever(&RoundThePole::LeverAxisOfRotation, 1);
        EXPECT_TRUE(AreNear(first, TurnedAboutZ({1.0, 0.0, 0.0}, rotation), 1e-15));
        EXPECT_TRUE(AreNear(second, TurnedAboutZ({-1.0, 0.0, 0.0}, rotation), 1e-15));
        for (const LeverChoice& c : choices) {
            EXPECT_EQ(VectorOf(UnlockedAt(c.a, c.b).UnLock), second) << c.why;
            EXPECT_EQ(VectorOf(LockedAt(c.a, c.b).Lock), first) << c.why;
        }
    }
}

TEST_F(LeverMoves, TurnTheLeverByTheBuiltInRotations) {
    EXPECT_EQ(UnlockedAt(0.0, 0.0).UnLock.RotationAngle, -135.0);
    EXPECT_EQ(LockedAt(0.0, 0.0).Lock.RotationAngle, -138.0);
}

TEST_F(LeverMoves, ReadTheLeverRotationsForEachPlan) {
    Store("Locked To Unlocked Lever Rotation", "120");
    Store("UnLocked To locked Lever Rotation", "121.5");
    EXPECT_EQ(UnlockedAt(0.0, 0.0).UnLock.RotationAngle, -120.0);
    EXPECT_EQ(LockedAt(0.0, 0.0).Lock.RotationAngle, -121.5);
    Store("Locked To Unlocked Lever Rotation", "-25");
    EXPECT_EQ(UnlockedAt(0.0, 0.0).UnLock.RotationAngle, 25.0);
}

TEST_F(LeverMoves, UseTheLeverCentresOfTheSettings) {
    Store("Head Centre To Lever Centre X Offset", "31.0");
    LoadWorkedHead();
    EXPECT_EQ(UnlockedAt(45.0, 90.0).EngageWithUnLockLever.XPosition, 128.0 + 31.0);
    EXPECT_EQ(UnlockedAt(0.0, 90.0).EngageWithUnLockLever.XPosition, 128.0 - 31.0);
    EXPECT_EQ(LockedAt(45.0, 90.0).ApproachLockLever.XPosition, 128.0 + 31.0);
    EXPECT_EQ(LockedAt(0.0, 90.0).ApproachLockLever.XPosition, 128.0 - 31.0);
}

TEST_F(LeverMoves, GoRoundAVerticalAxisThroughThePole) {
    for (const double rotation : {0.0, 30.0, -123.0}) {
        LoadWorkedHead(rotation);
        Triple pole{};
        planner.CalculatePoleLocation(pole[0], pole[1], pole[2]);
        planner.CalculateRotateToLockLeverMoves(moves, MaVectorOf(FromCentre(12.0, -30.0, 5.0)), 45.0, 90.0);
        EXPECT_EQ(OriginOf(moves.RotateToLockLever), pole);
        EXPECT_EQ(VectorOf(moves.RotateToLockLever), (Triple{0.0, 0.0, 1.0}));
    }
}

TEST_F(LeverMoves, GoRoundByTheNegatedAngleFromTheStartToTheLever) {
    // The unlocked approach of lever 0 is at (30.3, 24.3) from the pole.
    struct Case {
        double x;
        double y;
        double angle;
        const char* why;
    };
    for (const Case& c : {Case{-24.3, 30.3, 90.0, "a quarter turn clockwise"},
                          Case{24.3, -30.3, -90.0, "a quarter turn counter-clockwise"},
                          Case{60.6, 48.6, 0.0, "already at that azimuth, further out"},
                          Case{-15.15, -12.15, -180.0, "opposite: half a turn counter-clockwise"}}) {
        planner.CalculateRotateToLockLeverMoves(moves, MaVectorOf(FromCentre(c.x, c.y, -400.0)), 45.0, 90.0);
        // After rounding, the start can be on either side of the opposite azimuth.
        EXPECT_NEAR(std::remainder(moves.RotateToLockLever.RotationAngle - c.angle, 360.0), 0.0, 1e-11) << c.why;
        EXPECT_LE(std::abs(moves.RotateToLockLever.RotationAngle), 180.0) << c.why;
    }
}

} // namespace
