#include "tests/planning/Planner.h"

#include <cmath>
#include <limits>

namespace {

const CMaVector notUsed(std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN(),
                        std::numeric_limits<double>::quiet_NaN());

class PegMoves : public Planning {
protected:
    /// The angle of the arc from the position above the lever to the approach position of the peg. X and Y of both are
    /// relative to the pole.
    double RotationToPeg(double fromX, double fromY, double toX, double toY) {
        moves.DisengageFromUnLockLever = {workedCentre[0] + fromX, workedCentre[1] + fromY, workedSafeZ};
        planner.CalculateRotateToPeg(moves, notUsed, MaVectorOf(FromCentre(toX, toY, -10.0)));
        return moves.RotateToPeg.RotationAngle;
    }
};

TEST_F(PegMoves, RotateByTheNegatedCounterClockwiseAngleFromTheLeverToThePeg) {
    struct Case {
        Triple from;
        Triple to;
        double angle;
        const char* why;
    };
    for (const Case& c : {Case{{8, 0, 0}, {0, 16, 0}, -90.0, "counter-clockwise is negative"},
                          Case{{8, 0, 0}, {0, -16, 0}, 90.0, "clockwise is positive"},
                          Case{{8, 0, 0}, {4, 4, 0}, -45.0, "half a right angle"},
                          Case{{8, 0, 0}, {-4, 4, 0}, -135.0, "more than a right angle"},
                          Case{{8, 0, 0}, {-4, -4, 0}, 135.0, "more than a right angle, clockwise"},
                          Case{{8, 0, 0}, {-16, 0, 0}, -180.0, "the opposite azimuth is counter-clockwise"},
                          Case{{8, 0, 0}, {2, 0, 0}, 0.0, "the same azimuth"},
                          Case{{-2, -2, 0}, {0, -3, 0}, -45.0, "from any azimuth"}})
        EXPECT_NEAR(RotationToPeg(c.from[0], c.from[1], c.to[0], c.to[1]), c.angle, 2e-13) << c.why;
}

TEST_F(PegMoves, RotateAboutTheVerticalThroughThePole) {
    LoadWorkedHead(30.0);
    RotationToPeg(8.0, 0.0, 0.0, 16.0);
    Triple pole{};
    planner.CalculatePoleLocation(pole[0], pole[1], pole[2]);
    EXPECT_EQ(OriginOf(moves.RotateToPeg), pole);
    EXPECT_EQ(VectorOf(moves.RotateToPeg), (Triple{0.0, 0.0, 1.0}));
}

TEST_F(PegMoves, RotateIndependentlyOfHeightsAndHeadCentre) {
    const double angle = RotationToPeg(8.0, 3.0, -5.0, 16.0);
    moves.DisengageFromUnLockLever.ZPosition = -1e6;
    planner.CalculateRotateToPeg(moves, CMaVector(1e9, 1e9, 1e9), MaVectorOf(FromCentre(-5.0, 16.0, 1e6)));
    EXPECT_EQ(moves.RotateToPeg.RotationAngle, angle);
}

TEST_F(PegMoves, HaveNoAngleFromAPointOnThePole) {
    // The azimuth does not exist, and the planner does not check that: the angle is not-a-number.
    EXPECT_TRUE(std::isnan(RotationToPeg(0.0, 0.0, 0.0, 16.0)));
}

TEST_F(PegMoves, EngageFromAboveTheApproachPoint) {
    planner.CalculateEngageWithPeg(moves, CMaVector(0.1, 0.2, 0.3), CMaVector(-1.1, -2.2, -3.3));
    EXPECT_EQ(TripleOf(moves.MoveToPegAtSafeZ), (Triple{0.1, 0.2, workedSafeZ}));
    EXPECT_EQ(TripleOf(moves.ApproachPeg), (Triple{0.1, 0.2, 0.3}));
    EXPECT_EQ(TripleOf(moves.EngageWithPeg), (Triple{-1.1, -2.2, -3.3}));
}

TEST_F(PegMoves, DisengageToAboveTheApproachPoint) {
    planner.CalculateDisengageFromPeg(moves, CMaVector(0.1, 0.2, 0.3));
    EXPECT_EQ(TripleOf(moves.DisengageFromPeg), (Triple{0.1, 0.2, 0.3}));
    EXPECT_EQ(TripleOf(moves.DisengageFromPegToSafeZ), (Triple{0.1, 0.2, workedSafeZ}));
}

TEST_F(PegMoves, IndexAToZeroThenBThenAAboutTheHeadCentre) {
    planner.StandAt(30.0, -45.0);
    const CMaVector centre(0.1, 0.2, 0.3);
    planner.CalculateHeadIndexingMoves(moves, 75.0, 120.0, centre, CMaVector(0.5, 0.6, 0.7), CMaVector(0.8, 0.9, 1.0),
                                       CMaVector(-0.5, -0.6, -0.7));
    for (const ArcData& arc : {moves.IntermediateAPosition, moves.MoveToBPosition, moves.MoveToAPosition})
        EXPECT_EQ(OriginOf(arc), (Triple{0.1, 0.2, 0.3}));
    EXPECT_EQ(VectorOf(moves.IntermediateAPosition), (Triple{0.5, 0.6, 0.7}));
    EXPECT_EQ(VectorOf(moves.MoveToBPosition), (Triple{0.8, 0.9, 1.0}));
    EXPECT_EQ(VectorOf(moves.MoveToAPosition), (Triple{-0.5, -0.6, -0.7}));
    // Arcs are left-handed: an arc by +x decreases the head angle by x.
    EXPECT_EQ(moves.IntermediateAPosition.RotationAngle, 30.0);
    EXPECT_EQ(moves.MoveToBPosition.RotationAngle, -165.0);
    EXPECT_EQ(moves.MoveToAPosition.RotationAngle, -75.0);
}

TEST_F(PegMoves, IndexBTheLongWayRoundWithoutWrapping) {
    struct Case {
        double from;
        double to;
        double angle;
    };
    for (const Case& c :
         {Case{-180.0, 180.0, -360.0}, Case{180.0, -180.0, 360.0}, Case{150.0, -165.0, 315.0}, Case{90.0, 90.0, 0.0}}) {
        planner.StandAt(0.0, c.from);
        EXPECT_EQ(planner.Plan(0.0, c.to).MoveToBPosition.RotationAngle, c.angle) << c.from << " to " << c.to;
    }
}

TEST_F(PegMoves, CancelEachOtherFromAPositionToItself) {
    for (const double a : {0.0, 15.0, 90.0}) {
        planner.StandAt(a, 45.0);
        const RequiredMoves plan = planner.Plan(a, 45.0);
        EXPECT_EQ(plan.MoveToBPosition.RotationAngle, 0.0);
        EXPECT_EQ(plan.IntermediateAPosition.RotationAngle, a);
        EXPECT_EQ(plan.MoveToAPosition.RotationAngle, -a);
        EXPECT_EQ(VectorOf(plan.IntermediateAPosition), VectorOf(plan.MoveToAPosition));
        EXPECT_EQ(TripleOf(plan.ApproachPeg), TripleOf(plan.DisengageFromPeg));
    }
}

} // namespace
