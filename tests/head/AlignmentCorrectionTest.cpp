#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/head/SavedHead.h"
#include "tests/support/SimulatedHead.h"

#include <cmath>
#include <limits>

namespace {

constexpr const wchar_t* correcting = L"RoundThePole::CalculateRotationFromIdealAlignment";

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

/// Points in the vertical plane through the origin and (x, y), at several heights. All are in one quadrant.
std::vector<Triple> InVerticalPlaneTowards(double x, double y) {
    return {{0.0, 0.0, 150.0}, {40.0 * x, 40.0 * y, 140.0}, {100.0 * x, 100.0 * y, 90.0}, {150.0 * x, 150.0 * y, 5.0}};
}

/// Points in the vertical plane at 30 degrees to the Y axis, on the given sides of the origin.
std::vector<Triple> At30DegreesToY(double signOfX, double signOfY) {
    return InVerticalPlaneTowards(signOfX * 0.5, signOfY * std::sqrt(0.75));
}

/// In degrees: the rounding of a plane fit and of two arctangents.
constexpr double angleTolerance = 1e-12;

class AlignmentCorrection : public HeadTest {
protected:
    int Quadrant(const std::vector<Triple>& points) const {
        CMaPointArray array = ArrayOf(points);
        return head.DetermineQuadrant(array);
    }
    double RotationFor(const std::vector<Triple>& points) {
        CMaPointArray array = ArrayOf(points);
        head.CalculateRotationFromIdealAlignment(array);
        return head.RequiredRotationAroundZ();
    }

    RoundThePole head;
};

TEST_F(AlignmentCorrection, FindsTheQuadrantWithAMarginOfExactlyTen) {
    SavedHead{.headCentre = {100.0, -200.0, 50.0}}.LoadInto(head);
    const double beyondX = std::nextafter(110.0, infinity);
    const double beyondY = std::nextafter(-190.0, infinity);
    struct Case {
        int quadrant;
        std::vector<Triple> points;
        const char* why;
    };
    const std::vector<Case> cases{
        {1, {}, "no points"},
        {1, {{100, -200, 50}}, "at the head centre"},
        {1, {{-900, -900, 0}, {99, -201, 0}}, "on the negative sides"},
        {1, {{110, -190, 50}}, "exactly 10 beyond the head centre in X and Y"},
        {4, {{beyondX, -190, 50}}, "one bit more than 10 in X"},
        {2, {{110, beyondY, 50}}, "one bit more than 10 in Y"},
        {3, {{beyondX, beyondY, 50}}, "one bit more than 10 in both"},
        {3, {{beyondX, -500, 0}, {-500, beyondY, 0}}, "in X by one point and in Y by another"},
        {4, {{100, -200, 50}, {300, -200, 50}, {-900, -900, 50}}, "a single point beyond in X among others"},
        {4, {{300, -200, 50}, {100, -200, 50}}, "the first point alone is beyond"},
        {2, {{100, -200, 50}, {100, 0, 50}}, "the last point alone is beyond"},
        {1, {{100, -200, 1e9}, {100, -200, -1e9}}, "the height has no effect"},
        {1, {{notANumber, notANumber, notANumber}}, "not a number is not beyond"},
        {2, {{notANumber, 0, 0}}, "not a number in X does not affect Y"},
        {3, {{infinity, infinity, 0}}, "infinitely far is beyond"},
        {1, {{-infinity, -infinity, 0}}, "infinitely far on the negative sides"}};
    for (const Case& c : cases) EXPECT_EQ(Quadrant(c.points), c.quadrant) << c.why;
}

TEST_F(AlignmentCorrection, ComparesWithTheMarginOfTenToTheLastBit) {
    const double beyond = std::nextafter(10.0, infinity);
    EXPECT_EQ(Quadrant({{10.0, 10.0, 0.0}}), 1);
    EXPECT_EQ(Quadrant({{beyond, 10.0, 0.0}}), 4);
    EXPECT_EQ(Quadrant({{10.0, beyond, 0.0}}), 2);
    EXPECT_EQ(Quadrant({{beyond, beyond, 0.0}}), 3);
}

TEST_F(AlignmentCorrection, ResolvesTheAngleByQuadrant) {
    struct Case {
        int quadrant;
        double signOfX;
        double signOfY;
        double rotation;
    };
    for (const Case& c :
         {Case{1, -1.0, -1.0, 150.0}, Case{2, -1.0, 1.0, 30.0}, Case{3, 1.0, 1.0, -30.0}, Case{4, 1.0, -1.0, -150.0}}) {
        SCOPED_TRACE(c.quadrant);
        const std::vector<Triple> points = At30DegreesToY(c.signOfX, c.signOfY);
        ASSERT_EQ(Quadrant(points), c.quadrant);
        EXPECT_NEAR(RotationFor(points), c.rotation, angleTolerance);
    }
}

TEST_F(AlignmentCorrection, SubtractsTheBAngleOfTheASet) {
    AlignmentArray a(ItemsAt(PointsOf(SimulatedHead().ASet(0.0)), 0.0, 90.0));
    AlignmentArray b(SimulatedHead().BSet(75.0));
    head.ValidateSafeArrayData(a.Address(), b.Address());
    ASSERT_EQ(head.AAxisCaptureBPosition(), 90.0);
    EXPECT_NEAR(RotationFor(At30DegreesToY(-1.0, 1.0)), -60.0, angleTolerance);
}

TEST_F(AlignmentCorrection, TurnsTheIdealHeadByTheComputedAngle) {
    EXPECT_NEAR(RotationFor(At30DegreesToY(-1.0, 1.0)), 30.0, angleTolerance);
    EXPECT_TRUE(AreNear(TripleOf(head.AAxis()), {-std::sqrt(0.75), -0.5, 0.0}, 1e-14));
    EXPECT_TRUE(AreNear(TripleOf(head.ApproachDirection()), {-0.5, std::sqrt(0.75), 0.0}, 1e-14));
}

TEST_F(AlignmentCorrection, TurnsEveryDirectionAndOffsetButNotTheHeadCentre) {
    const Triple centre{312.5, -48.25, -610.0};
    for (const double angle : {37.5, -90.0, 123.0, 540.0}) {
        SCOPED_TRACE(angle);
        SavedHead{.headCentre = centre, .safePosition = {1.0, 2.0, 3.0}, .rotation = angle}.LoadInto(head);
        const auto turned = [angle](const Triple& ideal) { return TurnedAboutZ(ideal, angle); };
        EXPECT_TRUE(AreNear(TripleOf(head.ApproachDirection()), turned({0.0, 1.0, 0.0}), 2e-15));
        EXPECT_TRUE(AreNear(TripleOf(head.DriveCupOffset()), turned({-6.95, 24.0, -11.5}), 5e-14));
        EXPECT_TRUE(AreNear(TripleOf(head.AAxis()), turned({-1.0, 0.0, 0.0}), 2e-15));
        EXPECT_EQ(TripleOf(head.BAxis()), (Triple{0.0, 0.0, 1.0}));

        for (const LeverPosition& position : leverPositions)
            for (const int lever : {0, 1})
                EXPECT_TRUE(
                    AreNear(AnswerFor(head, position.query, lever), centre + turned(position.OffsetOf(lever)), 5e-13));
        EXPECT_TRUE(AreNear(AnswerFor(head, &RoundThePole::LeverAxisOfRotation, 0), turned({1.0, 0.0, 0.0}), 2e-15));
        EXPECT_TRUE(AreNear(AnswerFor(head, &RoundThePole::LeverAxisOfRotation, 1), turned({-1.0, 0.0, 0.0}), 2e-15));

        EXPECT_EQ(TripleOf(head.HeadCentre()), centre);
        EXPECT_EQ(head.SafePositionX(), 1.0);
        EXPECT_EQ(head.SafePositionY(), 2.0);
        EXPECT_EQ(head.SafePositionZ(), -575.0);
    }
}

TEST_F(AlignmentCorrection, TurnsAboutTheOriginForEachAxis) {
    // A quarter turn is exact: Y goes to Z about X, Z to X about Y.
    head.AdjustForMisAlignment(90.0, CMaGeometry::X);
    EXPECT_EQ(TripleOf(head.ApproachDirection()), (Triple{0.0, 0.0, 1.0}));
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-6.95, 11.5, 24.0}));
    head.AdjustForMisAlignment(90.0, CMaGeometry::Y);
    EXPECT_EQ(TripleOf(head.ApproachDirection()), (Triple{1.0, 0.0, 0.0}));
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{24.0, 11.5, 6.95}));
}

TEST_F(AlignmentCorrection, ByZeroChangesNoBit) {
    SavedHead{.headCentre = {0.1, 0.2, 0.3}, .rotation = 33.3}.LoadInto(head);
    const auto state = [this] {
        return std::vector<Triple>{TripleOf(head.AAxis()),
                                   TripleOf(head.BAxis()),
                                   TripleOf(head.ApproachDirection()),
                                   TripleOf(head.DriveCupOffset()),
                                   TripleOf(head.HeadCentre()),
                                   AnswerFor(head, &RoundThePole::LeverUnlockedApproachPosition, 0),
                                   AnswerFor(head, &RoundThePole::LeverLockingCentreOfRotation, 1),
                                   AnswerFor(head, &RoundThePole::LeverAxisOfRotation, 0)};
    };
    const std::vector<Triple> before = state();
    head.AdjustForMisAlignment(0.0, CMaGeometry::Z);
    EXPECT_EQ(state(), before);
}

TEST_F(AlignmentCorrection, AddsUpWhenAppliedTwice) {
    // Therefore each load and each computation begins with the ideal directions.
    head.AdjustForMisAlignment(30.0, CMaGeometry::Z);
    head.AdjustForMisAlignment(30.0, CMaGeometry::Z);
    EXPECT_TRUE(AreNear(TripleOf(head.AAxis()), TurnedAboutZ({-1.0, 0.0, 0.0}, 60.0), 1e-15));
}

TEST_F(AlignmentCorrection, UsesTheFullPi) {
    // The shortened pi is used for head angles and for swings. Here it would cause an error of 3.2e-15.
    constexpr double sineOfOneDegree = 0.017452406437283512;
    head.AdjustForMisAlignment(179.0, CMaGeometry::Z);
    EXPECT_NEAR(head.ApproachDirection()[0], -sineOfOneDegree, 8e-16);
}

TEST_F(AlignmentCorrection, DoesNotMoveTheHeadCentre) {
    SimulatedHead straight{.pole = {100.0, -200.0, -300.0}};
    for (const double mounting : {0.0, 20.0, -35.0}) {
        straight.mountingAngle = mounting;
        ASSERT_EQ(Computing(head, straight.ASet(45.0), straight.BSet(75.0)).code, S_OK);
        EXPECT_TRUE(AreNear(TripleOf(head.HeadCentre()), straight.pole, 1e-10));
        EXPECT_NEAR(head.RequiredRotationAroundZ(), mounting, 1e-10);
    }
}

TEST_F(AlignmentCorrection, NamesThePlaneFitWithTheTextOfTheCircleFit) {
    // The text is fixed: it says circle although a plane is fitted.
    for (const std::vector<Triple>& points :
         {std::vector<Triple>{{0, 5, 7}, {1, 5, 7}, {4, 5, 7}, {9, 5, 7}}, std::vector<Triple>{{1, 2, 3}, {1, 2, 3}},
          std::vector<Triple>{{notANumber, 0, 0}, {10, 0, 0}, {0, 10, 0}, {0, 0, 10}}, std::vector<Triple>{}}) {
        const Raised raised = RaisedBy([&] { RotationFor(points); });
        ExpectFailure(raised,
                      {QMV_E_GEOMETRY_IMPOSSIBLE, correcting, L"Error Fitting points to a circle", L"Unspecified"});
    }
}

TEST_F(AlignmentCorrection, NamesTheTurnAboutAnAxisThatDoesNotExist) {
    const Raised raised = RaisedBy([&] { head.AdjustForMisAlignment(30.0, static_cast<CMaGeometry::EAxisType>(3)); });
    ExpectFailure(raised,
                  {QMV_E_GEOMETRY_IMPOSSIBLE, L"RoundThePole::AdjustForMisAlignment", L"Unspecified", L"Unspecified"});
}

TEST_F(AlignmentCorrection, NamesTheLineFitWhenTheHeadCentreIsNotFinite) {
    for (const double bad : {notANumber, infinity})
        for (std::size_t i = 0; i < 3; ++i) {
            SavedHead saved;
            saved.headCentre[i] = bad;
            saved.LoadInto(head);
            const Raised raised = RaisedBy([&] { RotationFor(At30DegreesToY(-1.0, 1.0)); });
            ExpectFailure(raised, {QMV_E_GEOMETRY_IMPOSSIBLE, correcting, L"Error Fitting Line Through Point Array",
                                   L"Unspecified"});
        }
}

} // namespace
