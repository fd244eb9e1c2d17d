#include "maths/CMaPlane.h"
#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/support/SimulatedHead.h"

#include <algorithm>
#include <limits>
#include <random>

namespace {

/// A tolerance for head centres. The roundings of coordinates below 100 move a head centre by less.
constexpr double fewRoundings = 1e-11;

/// `count` points over `arcDegrees` of a circle about the line through `centre` along `axis`.
std::vector<Triple> Circle(const Triple& centre, const Triple& axis, double radius, int count, double arcDegrees) {
    const Triple normal = Unit(axis);
    const Triple other = std::abs(normal[0]) < 0.8 ? Triple{1.0, 0.0, 0.0} : Triple{0.0, 1.0, 0.0};
    const Triple u = Unit(Cross(normal, other));
    const Triple v = Cross(normal, u);
    std::vector<Triple> points;
    for (int i = 0; i < count; ++i) {
        const double angle = arcDegrees / 180.0 * 3.14159265358979323846 * i / (count - 1);
        points.push_back(centre + (radius * std::cos(angle)) * u + (radius * std::sin(angle)) * v);
    }
    return points;
}

/// Items that become `points` when ComputeGeometry subtracts the built-in locked-to-unlocked offset, (0, 0, -1.5).
AlignmentPoints Measured(const std::vector<Triple>& points) {
    AlignmentPoints items = ItemsAt(points, 30.0, 0.0);
    for (HeadAlignmentDataItem& item : items) item.ZPosition -= 1.5;
    return items;
}

std::vector<Triple> Reversed(std::vector<Triple> points) {
    std::reverse(points.begin(), points.end());
    return points;
}

class HeadCentre : public HeadTest {
protected:
    RoundThePole head;
};

TEST_F(HeadCentre, IsWhereTheAxesMeet) {
    const std::vector<Triple> aboutX = Circle({14.0, 20.0, 30.0}, {1.0, 0.0, 0.0}, 50.0, 6, 200.0);
    const std::vector<Triple> aboutZ = Circle({10.0, 20.0, 21.0}, {0.0, 0.0, 1.0}, 70.0, 6, 300.0);
    const Triple meeting{10.0, 20.0, 30.0};
    // Points in the reverse order can reverse the fitted normal. The head centre must not depend on that.
    for (const auto& a : {aboutX, Reversed(aboutX)})
        for (const auto& b : {aboutZ, Reversed(aboutZ)}) {
            ASSERT_EQ(Computing(head, Measured(a), Measured(b)).code, S_OK);
            EXPECT_TRUE(AreNear(TripleOf(head.HeadCentre()), meeting, fewRoundings));
        }
}

TEST_F(HeadCentre, LiesOnTheBAxisAtTheFootOfTheCommonPerpendicular) {
    const auto a = Circle({14.0, 20.0, 33.0}, {1.0, 0.0, 0.0}, 50.0, 6, 200.0); // along X at Y = 20, Z = 33
    const auto b = Circle({10.0, 23.0, 21.0}, {0.0, 0.0, 1.0}, 70.0, 6, 300.0); // vertical through X = 10, Y = 23
    ASSERT_EQ(Computing(head, Measured(a), Measured(b)).code, S_OK);
    EXPECT_TRUE(AreNear(TripleOf(head.HeadCentre()), {10.0, 23.0, 33.0}, fewRoundings));
}

TEST_F(HeadCentre, IsTheFootForAllDirectionsOfTheAxes) {
    constexpr std::uint64_t seed = 20;
    SCOPED_TRACE(seed);
    std::mt19937_64 generator(seed);
    std::uniform_real_distribution<double> coordinate(-500.0, 500.0);
    std::uniform_real_distribution<double> component(-1.0, 1.0);
    const auto direction = [&] {
        return qmv40::model::Unit({component(generator), component(generator), component(generator)});
    };
    for (int i = 0; i < 200; ++i) {
        const Triple alongB = direction();
        const Triple alongA = direction();
        const Triple perpendicular = Cross(alongB, alongA);
        if (std::hypot(perpendicular[0], perpendicular[1], perpendicular[2]) < 0.3) continue;
        const Triple foot{coordinate(generator), coordinate(generator), coordinate(generator)};
        const Triple onA = foot + (40.0 * component(generator)) * Unit(perpendicular);
        const auto a = Circle(onA + (90.0 * component(generator)) * alongA, alongA, 120.0, 7, 270.0);
        const auto b = Circle(foot + (90.0 * component(generator)) * alongB, alongB, 80.0, 9, 320.0);
        ASSERT_EQ(Computing(head, Measured(a), Measured(b)).code, S_OK) << i;
        // Roundings of 1e-13 on a length of 90 tilt an axis by 1e-15 rad. The smallest angle between the axes is 0.3
        // rad.
        EXPECT_TRUE(AreNear(TripleOf(head.HeadCentre()), foot, 1e-10)) << i;
    }
}

TEST_F(HeadCentre, OfASimulatedHeadIsItsPoleSphere) {
    const SimulatedHead simulated{.pole = {312.5, -48.25, -610.0}, .mountingAngle = 7.0, .stylus = {1.0, -2.0, -150.0}};
    ASSERT_EQ(Computing(head, simulated.ASet(45.0), simulated.BSet(75.0)).code, S_OK);
    EXPECT_TRUE(AreNear(TripleOf(head.HeadCentre()), simulated.pole, 1e-10));
}

TEST_F(HeadCentre, OfParallelAxesIsNotFiniteAndTheLineFitRefusesIt) {
    // The same circle twice: both fits compute the same, so that the axes are parallel to the last bit. The head centre
    // itself is not checked; the line fit of the alignment correction is the first step that fails.
    const auto circle = Circle({10.0, 20.0, 30.0}, {0.0, 0.0, 1.0}, 70.0, 6, 300.0);
    const Raised raised = Computing(head, Measured(circle), Measured(circle));
    ExpectFailure(raised, {QMV_E_GEOMETRY_IMPOSSIBLE, L"RoundThePole::CalculateRotationFromIdealAlignment",
                           L"Error Fitting Line Through Point Array", L"Unspecified"});
    for (const int i : {0, 1, 2}) EXPECT_FALSE(std::isfinite(head.HeadCentre()[i])) << i;
}

TEST_F(HeadCentre, ThatIsNotFiniteKeepsTheResultsOfEarlierSteps) {
    const SimulatedHead turned{.mountingAngle = 25.0};
    ASSERT_EQ(Computing(head, turned.ASet(45.0), turned.BSet(75.0)).code, S_OK);
    const double rotation = head.RequiredRotationAroundZ();
    const auto circle = Circle({10.0, 20.0, 30.0}, {0.0, 0.0, 1.0}, 70.0, 6, 300.0);
    EXPECT_EQ(Computing(head, Measured(circle), Measured(circle)).code, QMV_E_GEOMETRY_IMPOSSIBLE);
    EXPECT_FALSE(std::isfinite(head.SafePositionZ()));
    EXPECT_EQ(AnswerFor(head, &RoundThePole::LeverAxisOfRotation, 0), (Triple{1.0, 0.0, 0.0}));
    EXPECT_EQ(TripleOf(head.AAxis()), (Triple{-1.0, 0.0, 0.0}));
    EXPECT_EQ(TripleOf(head.DriveCupOffset()), (Triple{-6.95, 24.0, -11.5}));
    EXPECT_EQ(head.RequiredRotationAroundZ(), rotation);
}

TEST_F(HeadCentre, CannotBeComputedFromPointsOnNoCircle) {
    struct Case {
        const char* why;
        std::vector<Triple> points;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const std::vector<Case> cases{
        {"on a line along X", {{0, 5, 7}, {1, 5, 7}, {4, 5, 7}, {9, 5, 7}}},
        {"on a line along Z", {{1, 5, 0}, {1, 5, 16}, {1, 5, -3}, {1, 5, 2}}},
        {"on a slanting line", {{0, 0, 0}, {1, 2, -4}, {2, 4, -8}, {4, 8, -16}, {8, 16, -32}}},
        {"in one place", {{3, 4, 5}, {3, 4, 5}, {3, 4, 5}, {3, 4, 5}}},
        {"in two places", {{3, 4, 5}, {6, 4, 5}, {3, 4, 5}, {6, 4, 5}}},
        {"at the origin after the shift", {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}}},
        {"X not a number", {{notANumber, 0, 0}, {10, 0, 0}, {0, 10, 0}, {0, -10, 0}}},
        {"Y infinite", {{0, infinity, 0}, {10, 0, 0}, {0, 10, 0}, {0, -10, 0}}},
        {"Z not a number", {{-10, 0, 0}, {10, 0, 0}, {0, 10, 0}, {0, -10, notANumber}}},
        {"Z infinite", {{-10, 0, 0}, {10, 0, 0}, {0, 10, -infinity}, {0, -10, 0}}}};
    const SimulatedHead simulated;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        ExpectFailure(Computing(head, Measured(c.points), simulated.BSet(75.0)), failures::noCircle);
        ExpectFailure(Computing(head, simulated.ASet(45.0), Measured(c.points)), failures::noCircle);
    }
}

TEST_F(HeadCentre, DoesNotChangeWhenAFitFails) {
    const SimulatedHead turned{.pole = {100.0, -200.0, -300.0}, .mountingAngle = 25.0};
    ASSERT_EQ(Computing(head, turned.ASet(45.0), turned.BSet(75.0)).code, S_OK);
    const Triple centre = TripleOf(head.HeadCentre());
    const double safeZ = head.SafePositionZ();
    const double rotation = head.RequiredRotationAroundZ();
    const std::vector<Triple> line{{0, 5, 7}, {1, 5, 7}, {4, 5, 7}, {9, 5, 7}};
    EXPECT_EQ(Computing(head, Measured(line), turned.BSet(75.0)).code, QMV_E_GEOMETRY_IMPOSSIBLE);
    EXPECT_EQ(TripleOf(head.HeadCentre()), centre);
    EXPECT_EQ(head.SafePositionZ(), safeZ);
    EXPECT_EQ(head.RequiredRotationAroundZ(), rotation);
    // The steps before the fit have filled their fields.
    EXPECT_EQ(TripleOf(head.AAxis()), (Triple{-1.0, 0.0, 0.0}));
    EXPECT_EQ(PointsOf(head.AAxisPoints()), line);
    EXPECT_EQ(head.AAxisCaptureBPosition(), 0.0);
}

TEST_F(HeadCentre, FitsTheMeasuredPointsAndNotTheirProjections) {
    // The points are projected onto their plane, but the projections are assigned to copies, as required. The circle is
    // the one through the points as captured.
    const SimulatedHead simulated{.pole = {100.0, -200.0, -300.0}};
    const std::vector<Triple> noisy = PointsOf(WithNoise(simulated.ASet(45.0), 3.0, 5));
    CMaPointArray points = ArrayOf(noisy);
    const std::unique_ptr<CMaCircle> circle = head.FitPointsToACircle(points);
    EXPECT_EQ(PointsOf(points), noisy);

    CMaCircle throughThePoints(1.0);
    throughThePoints.Fit(points, 200000);
    CMaPlane plane;
    plane.Fit(points);
    CMaPointArray projections(0);
    for (int i = 0; i < points.GetSize(); ++i) projections.Add(points[i].ProjectionOn(plane));
    CMaCircle throughTheProjections(1.0);
    throughTheProjections.Fit(projections, 200000);

    const auto centre = [](const CMaCircle& c) { return TripleOf(c.GetCentre().To3DVector()); };
    ASSERT_GT(Distance(centre(throughThePoints), centre(throughTheProjections)), 1e-3);
    EXPECT_EQ(centre(*circle), centre(throughThePoints));
    EXPECT_EQ(TripleOf(circle->GetNormal()), TripleOf(throughThePoints.GetNormal()));
}

TEST_F(HeadCentre, ReadsTheCentreOfACircleAsAVector) {
    CMaCircle circle(1.0);
    circle.Fit(ArrayOf({{5, 2, 3}, {1, 6, 3}, {-3, 2, 3}, {1, -2, 3}}), 200000);
    const std::unique_ptr<CMaVector> centre = head.GetCircleCentre(circle);
    EXPECT_TRUE(AreNear(TripleOf(*centre), {1.0, 2.0, 3.0}, 1e-14));
}

/// The foot on the B axis, with the operations in the required order. They must not be rearranged.
Triple FootOnTheBAxis(const RoundThePole& head) {
    CMaCircle circleB(1.0);
    circleB.Fit(head.BAxisPoints(), 200000);
    CMaCircle circleA(1.0);
    circleA.Fit(head.AAxisPoints(), 200000);
    const Triple nB = TripleOf(circleB.GetNormal()), nA = TripleOf(circleA.GetNormal());
    const Triple cB = TripleOf(circleB.GetCentre().To3DVector()), cA = TripleOf(circleA.GetCentre().To3DVector());
    const Triple dA{-nA[0], -nA[1], -nA[2]};
    const Triple w{cB[0] - cA[0], cB[1] - cA[1], cB[2] - cA[2]};
    const auto cross = [](const Triple& p, const Triple& q) {
        return Triple{p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0]};
    };
    const Triple u = cross(w, dA), v = cross(nB, dA);
    const double m = CMaVector(v[0], v[1], v[2]).Magnitude();
    const double d = u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
    const double t = -d / (m * m);
    return {cB[0] + nB[0] * t, cB[1] + nB[1] * t, cB[2] + nB[2] * t};
}

TEST_F(HeadCentre, HasTheBitsOfTheRequiredSteps) {
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> coordinate(-500.0, 500.0), noise(-1e-3, 1e-3);
    for (int i = 0; i < 200; ++i) {
        SimulatedHead simulated;
        simulated.pole = {coordinate(random), coordinate(random), coordinate(random)};
        const auto noisy = [&](AlignmentPoints points) {
            for (auto& point : points) {
                point.XPosition += noise(random);
                point.YPosition += noise(random);
                point.ZPosition += noise(random);
            }
            return points;
        };
        ASSERT_EQ(Computing(head, noisy(simulated.ASet(45.0)), noisy(simulated.BSet(60.0))).code, S_OK);
        ASSERT_EQ(TripleOf(head.HeadCentre()), FootOnTheBAxis(head)) << "capture " << i << " of seed 20";
    }
}

} // namespace
