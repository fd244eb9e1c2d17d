/// A model of the machine executes plans. Its arcs use the full pi.

#include "tests/planning/Planner.h"
#include "tests/support/MoveFields.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/SimulatedHead.h"
#include "tools/model/HeadAngles.h"
#include "tools/model/Turning.h"

#include <cmath>

using namespace qmv40;

namespace {

Triple TurnedAbout(const ArcData& arc, const Triple& point, double degrees) {
    return model::Turning{OriginOf(arc), VectorOf(arc), degrees}.Carried(point);
}

/// A positive angle turns the machine clockwise, seen from the tip of the rotation vector towards its origin.
Triple Executed(const ArcData& arc, const Triple& from) { return TurnedAbout(arc, from, -arc.RotationAngle); }
Triple ExecutedTheWrongWay(const ArcData& arc, const Triple& from) { return TurnedAbout(arc, from, arc.RotationAngle); }

/// The machine position after the three indexing arcs.
template <class Arc> Triple AfterIndexing(const RequiredMoves& moves, Arc&& execute) {
    const Triple atZero = execute(moves.IntermediateAPosition, TripleOf(moves.EngageWithPeg));
    return execute(moves.MoveToAPosition, execute(moves.MoveToBPosition, atZero));
}

/// The angle between the azimuths of two points, seen from the origin of an arc about the vertical, in degrees.
double AzimuthBetween(const ArcData& arc, const Triple& left, const Triple& right) {
    const double x1 = left[0] - arc.XOrigin;
    const double y1 = left[1] - arc.YOrigin;
    const double x2 = right[0] - arc.XOrigin;
    const double y2 = right[1] - arc.YOrigin;
    return std::abs(std::atan2(x1 * y2 - y1 * x2, x1 * x2 + y1 * y2)) * 180.0 / 3.14159265358979323846;
}

/// The errors of coordinates of some hundreds (1e-13), of three rotations, and of a pi with a relative error of 1e-15.
constexpr double executionTolerance = 2e-12;
constexpr double azimuthTolerance = 1e-11;

using Angles = model::HeadAngles;

/// The 175 index positions of the head.
std::vector<Angles> Positions() {
    std::vector<Angles> positions;
    for (int a = 0; a <= 90; a += 15)
        for (int b = -180; b <= 180; b += 15) positions.push_back({static_cast<double>(a), static_cast<double>(b)});
    return positions;
}

class ExecutedMoves : public HeadTest {
protected:
    void SetUp() override {
        SavedHead{.headCentre = {312.5, -148.25, -610.0}, .rotation = 33.3}.LoadInto(planner.Head());
    }
    Triple Engagement(const Angles& at) {
        return Answer([&](CMaVector& out) { planner.Head().EngagementPosition(at.a, at.b, out); });
    }

    Planner planner;
};

TEST_F(ExecutedMoves, OfAllIndexingsEndAtTheTargetsEngagement) {
    const std::vector<Angles> positions = Positions();
    ASSERT_EQ(positions.size(), 175U);
    std::vector<Triple> engagements;
    for (const Angles& at : positions) engagements.push_back(Engagement(at));
    double worst = 0.0;
    for (const Angles& from : positions) {
        planner.StandAt(from.a, from.b);
        for (std::size_t to = 0; to < positions.size(); ++to) {
            const RequiredMoves plan = planner.Plan(positions[to].a, positions[to].b);
            const double miss = Distance(AfterIndexing(plan, Executed), engagements[to]);
            ASSERT_LE(miss, executionTolerance)
                << from.a << ' ' << from.b << " to " << positions[to].a << ' ' << positions[to].b;
            worst = std::max(worst, miss);
        }
    }
    EXPECT_GT(worst, 0.0); // an error of exactly 0 would mean that nothing was compared
}

TEST_F(ExecutedMoves, InTheWrongDirectionMissByMillimetres) {
    struct Case {
        Angles from;
        Angles to;
    };
    for (const Case& c : {Case{{0, 0}, {45, 90}}, Case{{0, 0}, {15, 0}}, Case{{0, 0}, {0, 15}},
                          Case{{90, -90}, {0, 90}}, Case{{45, 120}, {75, -165}}}) {
        planner.StandAt(c.from.a, c.from.b);
        const RequiredMoves plan = planner.Plan(c.to.a, c.to.b);
        EXPECT_GT(Distance(AfterIndexing(plan, ExecutedTheWrongWay), Engagement(c.to)), 5.0)
            << c.from.a << ' ' << c.from.b << " to " << c.to.a << ' ' << c.to.b;
    }
}

TEST_F(ExecutedMoves, RoundThePoleEndAtTheAzimuthOfThePegAndOfTheLever) {
    int wrongWayShows = 0;
    for (const Angles& from : Positions()) {
        planner.StandAt(from.a, from.b);
        for (const Angles& to : {Angles{0, 0}, Angles{45, 90}, Angles{90, -180}, Angles{15, 165}, Angles{60, -45}}) {
            SCOPED_TRACE(testing::Message() << from.a << ' ' << from.b << " to " << to.a << ' ' << to.b);
            const RequiredMoves plan = planner.Plan(to.a, to.b);
            const Triple offLever = TripleOf(plan.DisengageFromUnLockLever);
            const Triple atPeg = Executed(plan.RotateToPeg, offLever);
            ASSERT_LE(AzimuthBetween(plan.RotateToPeg, atPeg, TripleOf(plan.ApproachPeg)), azimuthTolerance);
            ASSERT_NEAR(atPeg[2], offLever[2], executionTolerance);

            const Triple offPeg = TripleOf(plan.DisengageFromPegToSafeZ);
            const Triple atLever = Executed(plan.RotateToLockLever, offPeg);
            ASSERT_LE(AzimuthBetween(plan.RotateToLockLever, atLever, TripleOf(plan.ApproachLockLever)),
                      azimuthTolerance);
            ASSERT_NEAR(atLever[2], offPeg[2], executionTolerance);

            const Triple astray = ExecutedTheWrongWay(plan.RotateToPeg, offLever);
            wrongWayShows += AzimuthBetween(plan.RotateToPeg, astray, TripleOf(plan.ApproachPeg)) > 1.0;
        }
    }
    EXPECT_GT(wrongWayShows, 175 * 4); // executed right-handed, nearly every arc ends at another place
}

TEST_F(ExecutedMoves, OfATurnedHeadEndOnTheTurnedPositions) {
    // The plan of a head that is mounted turned is the plan of the ideal head, turned about the vertical.
    const SimulatedHead straight{.pole = {0.0, 0.0, 0.0}};
    SimulatedHead turned = straight;
    turned.mountingAngle = 25.0;
    Planner plain;
    ASSERT_EQ(Computing(plain.Head(), straight.ASet(45.0), straight.BSet(60.0)).code, S_OK);
    ASSERT_EQ(Computing(planner.Head(), turned.ASet(45.0), turned.BSet(60.0)).code, S_OK);
    plain.StandAt(30.0, -45.0);
    planner.StandAt(30.0, -45.0);
    const RequiredMoves before = plain.Plan(75.0, 120.0);
    const RequiredMoves after = planner.Plan(75.0, 120.0);
    for (const MoveField& move : moveFields) {
        SCOPED_TRACE(move.name);
        if (move.position != nullptr) {
            const Triple straightTurned = TurnedAboutZ(TripleOf(before.*move.position), 25.0);
            EXPECT_TRUE(AreNear(TripleOf(after.*move.position), straightTurned, 1e-9));
        } else {
            const ArcData& was = before.*move.arc;
            const ArcData& is = after.*move.arc;
            EXPECT_TRUE(AreNear(OriginOf(is), TurnedAboutZ(OriginOf(was), 25.0), 1e-9));
            EXPECT_TRUE(AreNear(VectorOf(is), TurnedAboutZ(VectorOf(was), 25.0), 1e-11));
            EXPECT_NEAR(is.RotationAngle, was.RotationAngle, 1e-9);
        }
    }
}

TEST_F(ExecutedMoves, AreTheSameAfterASaveAndALoad) {
    const SimulatedHead simulated{.pole = {312.123456789, -748.987654321, -610.5}, .mountingAngle = 12.3456789};
    ASSERT_EQ(Computing(planner.Head(), simulated.ASet(45.0), simulated.BSet(60.0)).code, S_OK);
    const TemporaryFolder folder;
    Bstr name(folder.Path("head.ini"));
    planner.Head().SaveToFile(name.Address());
    Planner loaded;
    loaded.Head().LoadFromFile(name.Address());

    // The file has ten digits: the rounding of coordinates below 1000, and of a rotation below 100 degrees, which moves
    // a point at 60 from the head centre by 1.05 for each degree.
    constexpr double rotationStep = 5e-9;
    constexpr double lengthStep = 5e-8 + 1.05 * rotationStep;
    constexpr double directionStep = rotationStep / 57.0;
    constexpr double angleStep = 1e-9; // both azimuths turn by the same angle, so that only rounding is left
    for (const Angles& from : {Angles{0, 0}, Angles{45, 90}, Angles{90, -180}})
        for (const Angles& to : {Angles{0, 0}, Angles{15, -60}, Angles{75, 180}}) {
            planner.StandAt(from.a, from.b);
            loaded.StandAt(from.a, from.b);
            const auto before = NumbersOf(planner.Plan(to.a, to.b));
            const auto after = NumbersOf(loaded.Plan(to.a, to.b));
            for (std::size_t i = 0; i < before.size(); ++i) {
                const std::string number = NameOfNumber(i);
                const bool direction = number.ends_with("RotationVector");
                const double tolerance = number.ends_with("RotationAngle") ? angleStep : lengthStep;
                EXPECT_NEAR(after[i], before[i], direction ? directionStep : tolerance) << number;
            }
        }
}

} // namespace
