#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "tests/maths/GeometryChecks.h"

#include <limits>

namespace {

CMaLine LineThrough(const std::vector<Coordinates>& points) {
    CMaLine line;
    line.Fit(ArrayOf(points));
    return line;
}

CMaPlane PlaneThrough(const std::vector<Coordinates>& points) {
    CMaPlane plane;
    plane.Fit(ArrayOf(points));
    return plane;
}

constexpr double fewRoundings = 1e-15; // radians

} // namespace

TEST(Line, IsTheXAxisBeforeAnyFit) {
    EXPECT_EQ(Distance(CMaLine().GetPoint(), {0.0, 0.0, 0.0}), 0.0);
    EXPECT_EQ(Distance(CMaLine().GetDirection(), {1.0, 0.0, 0.0}), 0.0);
}

TEST(Plane, IsTheXYPlaneBeforeAnyFit) {
    EXPECT_EQ(Distance(CMaPlane().GetPoint(), {0.0, 0.0, 0.0}), 0.0);
    EXPECT_EQ(Distance(CMaPlane().GetNormal(), {0.0, 0.0, 1.0}), 0.0);
}

TEST(Line, ThroughTwoPointsRunsAlongTheirDifference) {
    const CMaLine line = LineThrough({{10.0, 20.0, 30.0}, {10.0, 10.0, 30.0}});
    EXPECT_EQ(DirectionError(line.GetDirection(), {0.0, 1.0, 0.0}), 0.0);
    EXPECT_EQ(Distance(line.GetPoint(), {10.0, 15.0, 30.0}), 0.0);
}

TEST(Line, ThroughTwoPointsIsRightForCoordinatesOfAnySizes) {
    struct {
        Coordinates from, to;
        CMaVector direction;
        const char* why;
    } const cases[] = {
        {{1e-300, 1e-10, 1e-150}, {-1.0, 1.0, 0.0}, {-std::sqrt(0.5), std::sqrt(0.5), 0.0}, "squares that underflow"},
        {{1.0, 1e-10, 1.0}, {-1.0, 1.0, 1e150}, {0.0, 0.0, 1.0}, "1 beside 1e150"},
        {{0.0, 0.0, 0.0}, {5e-324, 0.0, 0.0}, {1.0, 0.0, 0.0}, "the smallest extent there is"},
        {{1.0, 0.0, 0.0}, {1.0, 5e-324, 0.0}, {0.0, 1.0, 0.0}, "an extent of 5e-324 of the largest coordinate"},
        {{1e200, 0.0, 0.0}, {1e200, 0.0, 1e-90}, {0.0, 0.0, 1.0}, "an extent of 1e-290 of the largest coordinate"},
    };
    constexpr double direction = 2e-10; // the expected directions neglect 1e-10 beside 1
    for (const auto& [from, to, expected, why] : cases)
        EXPECT_LT(DirectionError(LineThrough({from, to}).GetDirection(), expected), direction) << why;
}

TEST(Line, MinimisesTheSquaredDistancesAndNotThoseAlongAnAxis) {
    // By hand: the scatter matrix is [[10, 5], [5, 4]]. For the angle a of its first eigenvector,
    // tan 2a = 2 * 5 / (10 - 4).
    const CMaLine line = LineThrough({{-2, -1, 0}, {-1, 0, 0}, {0, -1, 0}, {1, 1, 0}, {2, 1, 0}});
    const double angle = 0.5 * std::atan2(2.0 * 5.0, 10.0 - 4.0);
    EXPECT_LT(DirectionError(line.GetDirection(), {std::cos(angle), std::sin(angle), 0.0}), fewRoundings);
}

TEST(Plane, ThroughThreePointsHasTheirCrossProductAsNormal) {
    const CMaPlane plane = PlaneThrough({{1.0, 0.0, 0.0}, {0.0, 2.0, 0.0}, {0.0, 0.0, 2.0}});
    EXPECT_LT(DirectionError(plane.GetNormal(), CMaVector(2.0, 1.0, 1.0) * (1.0 / std::sqrt(6.0))), fewRoundings);
}

TEST(Plane, IsRightForLongNarrowStrips) {
    // Strips of length 2000 and a width of 1/10,000 to 1/1,000,000 of it. The normal of the exact points is known. A
    // covariance matrix in a fixed frame would give it with an error of 1e-8 for the widest strip, and without a right
    // digit for the narrowest.
    std::mt19937_64 random(31);
    for (int round = 0; round < 60; ++round) {
        const double halfWidth = std::pow(10.0, -1 - round % 3);
        SCOPED_TRACE(testing::Message() << "seed 31, round " << round << ", half a width of " << halfWidth);
        const RandomFrame frame(random);
        std::vector<Coordinates> points;
        for (int i = -10; i <= 10; ++i)
            for (const double across : {-halfWidth, halfWidth}) points.push_back(frame.At(100.0 * i, across, 0.0));
        const double roundingOverWidth = 1000.0 * std::numeric_limits<double>::epsilon() / halfWidth;
        EXPECT_LT(DirectionError(PlaneThrough(points).GetNormal(), frame.third), roundingOverWidth);
    }
}

TEST(LineAndPlane, MoveTurnAndGrowWithTheirPoints) {
    std::mt19937_64 random(32);
    std::normal_distribution<double> normal;
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE("seed 32, round " + std::to_string(round));
        std::vector<Coordinates> points, moved;
        const RandomFrame frame(random);
        const double factor = std::pow(10.0, round % 9 - 4) / 3.0;
        for (int i = 0; i < 4 + round % 20; ++i) {
            const Coordinates p = {30.0 * normal(random), 5.0 * normal(random), 0.5 * normal(random)};
            points.push_back(p);
            const Coordinates turned = frame.At(p[0] * factor, p[1] * factor, p[2] * factor);
            moved.push_back({turned[0] + 7.0 * factor, turned[1] - 900.0 * factor, turned[2]});
        }
        std::reverse(moved.begin(), moved.end());
        const auto move = [&](const CMaPoint& p) {
            const Coordinates q = frame.At(p.x() * factor, p.y() * factor, p.z() * factor);
            return CMaPoint(q[0] + 7.0 * factor, q[1] - 900.0 * factor, q[2]);
        };
        const auto turn = [&](const CMaVector& v) {
            return frame.first * v[0] + frame.second * v[1] + frame.third * v[2];
        };
        // The rounding of coordinates of about 1000 over widths of about 1, multiplied where two spreads are nearly
        // equal.
        constexpr double place = 1e-12, direction = 1e-10;
        const CMaLine line = LineThrough(points), movedLine = LineThrough(moved);
        EXPECT_LT(Distance(movedLine.GetPoint(), move(line.GetPoint())), place * factor);
        EXPECT_LT(DirectionError(movedLine.GetDirection(), turn(line.GetDirection())), direction);
        const CMaPlane plane = PlaneThrough(points), movedPlane = PlaneThrough(moved);
        EXPECT_LT(Distance(movedPlane.GetPoint(), move(plane.GetPoint())), place * factor);
        EXPECT_LT(DirectionError(movedPlane.GetNormal(), turn(plane.GetNormal())), direction);
        EXPECT_NEAR(movedPlane.GetNormal().Magnitude(), 1.0, 1e-14);
        EXPECT_NEAR(movedLine.GetDirection().Magnitude(), 1.0, 1e-14);
    }
}

TEST(LineAndPlane, SurviveCoordinatesOfAnySize) {
    for (const double size : {1e300, 1e-300, 0x1.8p1023}) {
        const CMaLine line = LineThrough({{-size, 0.0, -size}, {size, 0.0, size}});
        EXPECT_LT(DirectionError(line.GetDirection(), {std::sqrt(0.5), 0.0, std::sqrt(0.5)}), fewRoundings) << size;
        const CMaPlane plane =
            PlaneThrough({{-size, 0.0, -size}, {size, 0.0, size}, {0.0, size, 0.0}, {0.0, -size, 0.0}});
        EXPECT_LT(DirectionError(plane.GetNormal(), {-std::sqrt(0.5), 0.0, std::sqrt(0.5)}), fewRoundings) << size;
    }
}
