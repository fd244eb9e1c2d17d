#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "tests/maths/GeometryChecks.h"

#include <limits>

using namespace qmv40;

namespace {

constexpr auto impossible = GeometryError::Reason::Impossible;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double huge = std::numeric_limits<double>::max();

struct Case {
    std::vector<Coordinates> points;
    bool aLine, aPlane, aCircle; ///< whether the points determine one
    const char* why;
};

const Case cases[] = {
    {{}, false, false, false, "no points"},
    {{{1, 2, 3}}, false, false, false, "one point"},
    {{{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}}, false, false, false, "all in one place"},
    {{{0.1, 0.2, 0.3}, {0.1, 0.2, 0.3}, {0.1, 0.2, 0.3}}, false, false, false, "in a place that is not a round number"},
    {{{1, 2, 3}, {4, 5, 6}}, true, false, false, "two points"},
    {{{1, 2, 3}, {4, 5, 6}, {1, 2, 3}, {4, 5, 6}}, true, false, false, "two points, twice"},
    {{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {5, 5, 5}}, true, false, false, "all on one line"},
    {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {5, 0, 0}}, true, false, false, "all on one axis"},
    {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, true, true, true, "three points"},
    {{{0, 0, 0}, {1, 0, 0}, {notANumber, 1, 0}}, false, false, false, "not a number"},
    {{{0, 0, 0}, {1, infinity, 0}, {0, 1, 0}, {1, 1, 0}}, false, false, false, "infinite"},
    {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, -infinity}}, false, false, false, "infinite at the end"},
    {{{0, 0, 0}, {1, 0, -infinity}, {0, 1, infinity}, {1, 1, 0}}, false, false, false, "infinite both ways"},
    {{{0, 0, 0}, {1e300, 1e300, 1e300}, {-1e300, -1e300, -1e300}}, true, false, false, "on a line, very large"},
    {{{0, 0, 0}, {1e-310, 2e-310, 0}, {-1e-310, -2e-310, 0}}, true, false, false, "on a line, very small"},
    {{{huge, 0, 0}, {-huge, 0, 0}, {0, huge, 0}}, true, true, true, "the largest coordinates"},
    {{{-3, 0.01, 0}, {-1, -0.01, 0}, {1, 0.01, 0}, {3, -0.01, 0}}, true, true, false, "bent equally to both sides"},
    {{{-6, -1, 0}, {-3, 0, 0}, {-2, 0, 0}, {1, 1, 0}}, true, true, false, "a slim parallelogram"},
    {{{6, 0, 0}, {-2, 1, 0}, {-2, 1, 0}, {2, 1, 0}, {6, 2, 0}}, true, true, false, "symmetric about a line"},
};

/// Checks that neither a plane nor a circle can be fitted to the points.
void ExpectNeitherPlaneNorCircle(const CMaPointArray& points) {
    EXPECT_TRUE(FailsWith(impossible, [&] { CMaPlane().Fit(points); }));
    EXPECT_TRUE(FailsWith(impossible, [&] { CMaCircle(1.0).Fit(points, 200000); }));
}

void ExpectNoFit(const CMaPointArray& points) {
    EXPECT_TRUE(FailsWith(impossible, [&] { CMaLine().Fit(points); }));
    ExpectNeitherPlaneNorCircle(points);
}

void ExpectOutcome(const Case& one) {
    SCOPED_TRACE(one.why);
    const CMaPointArray points = ArrayOf(one.points);
    CMaLine line;
    CMaPlane plane;
    CMaCircle circle(4.0);
    if (one.aLine) {
        EXPECT_NO_THROW(line.Fit(points));
    } else {
        EXPECT_TRUE(FailsWith(impossible, [&] { line.Fit(points); }));
        EXPECT_EQ(Distance(line.GetDirection(), {1.0, 0.0, 0.0}), 0.0) << "the line is kept";
    }
    if (one.aPlane) {
        EXPECT_NO_THROW(plane.Fit(points));
    } else {
        EXPECT_TRUE(FailsWith(impossible, [&] { plane.Fit(points); }));
        EXPECT_EQ(Distance(plane.GetNormal(), {0.0, 0.0, 1.0}), 0.0) << "the plane is kept";
    }
    if (one.aCircle) {
        EXPECT_NO_THROW(circle.Fit(points, 200000));
    } else {
        EXPECT_TRUE(FailsWith(impossible, [&] { circle.Fit(points, 200000); }));
        EXPECT_EQ(circle.GetRadius(), 4.0) << "the circle is kept";
        EXPECT_EQ(Distance(circle.GetCentre(), {0.0, 0.0, 0.0}), 0.0) << "the circle is kept";
    }
}

} // namespace

TEST(FitFailures, AreReportedAndLeaveTheObjectUnchanged) {
    for (const Case& one : cases) ExpectOutcome(one);
}

TEST(FitFailures, DoNotDependOnTheOrderOfThePoints) {
    for (Case one : cases) {
        std::reverse(one.points.begin(), one.points.end());
        ExpectOutcome(one);
        if (!one.points.empty()) std::rotate(one.points.begin(), one.points.begin() + 1, one.points.end());
        ExpectOutcome(one);
    }
}

namespace {

bool IsFinite(const CMaVector& v) { return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]); }

void ExpectPlaceAndDirection(const CMaPoint& place, const CMaVector& direction) {
    constexpr double unitWithin = 1e-14;
    EXPECT_TRUE(IsFinite(place.To3DVector()));
    EXPECT_NEAR(direction.Magnitude(), 1.0, unitWithin);
}

/// Calls `fit`. Returns whether it had a result. It may fail only because there is none.
template <typename Fit> bool IsFitted(const Fit& fit) {
    try {
        fit();
        return true;
    } catch (const GeometryError& error) {
        EXPECT_EQ(error.GetReason(), impossible);
        return false;
    }
}

} // namespace

TEST(FitFailures, AFitOfCoordinatesOfAnySizeIsFiniteOrFails) {
    constexpr double sizes[] = {0.0,     1.0,   3.0,    1e300, 1e-300, 1e-310, 5e-324,
                                1.7e308, 1e150, 1e-150, 1e-10, 1e6,    1e200,  1e-200};
    std::mt19937_64 random(80);
    int lines = 0, planes = 0, circles = 0;
    for (int round = 0; round < 20'000; ++round) {
        SCOPED_TRACE("seed 80, round " + std::to_string(round));
        const auto coordinate = [&] { return (random() % 2 == 0 ? 1.0 : -1.0) * sizes[random() % std::size(sizes)]; };
        CMaPointArray points;
        const int count = 2 + round % 6;
        for (int i = 0; i < count; ++i) {
            const double x = coordinate(), y = coordinate(), z = coordinate();
            points.Add(CMaPoint(x, y, z));
        }
        CMaLine line;
        CMaPlane plane;
        CMaCircle circle(1.0);
        lines += IsFitted([&] { line.Fit(points); }) ? 1 : 0;
        planes += IsFitted([&] { plane.Fit(points); }) ? 1 : 0;
        circles += IsFitted([&] { circle.Fit(points, 5000); }) ? 1 : 0;
        ExpectPlaceAndDirection(line.GetPoint(), line.GetDirection());
        ExpectPlaceAndDirection(plane.GetPoint(), plane.GetNormal());
        ExpectPlaceAndDirection(circle.GetCentre(), circle.GetNormal());
        ASSERT_TRUE(std::isfinite(circle.GetRadius()));
    }
    EXPECT_GT(lines, 1000);
    EXPECT_GT(planes, 1000);
    EXPECT_GT(circles, 100);
}

TEST(FitFailures, PointsCloserThanTheirRoundingAreOnePoint) {
    // The rounding of a coordinate of 1e300 is 1e284: the distance of the points, 1e-10, is 1e294 times smaller.
    for (const double away : {1e300, -1e300, huge}) {
        SCOPED_TRACE(away);
        ExpectNoFit(ArrayOf({{away, 0.0, 0.0}, {away, 1e-10, 0.0}, {away, 0.0, 1e-10}}));
    }
}

TEST(FitFailures, PointsRoundedFromAnyLineAreOnALine) {
    std::mt19937_64 random(77);
    std::uniform_real_distribution<double> along(-1.0, 1.0);
    for (const double away : {0.0, 1.0, 1e4, 1e9})
        for (const double size : {1e-3, 1.0, 1e3})
            for (const int count : {3, 4, 10, 100, 20'000}) {
                SCOPED_TRACE("seed 77: " + std::to_string(away) + ' ' + std::to_string(size) + ' ' +
                             std::to_string(count));
                const RandomFrame frame(random);
                const Coordinates start = frame.At(0.6 * away, 0.0, 0.8 * away);
                const CMaVector direction = RandomFrame(random).first;
                CMaPointArray points;
                for (int i = 0; i < count; ++i) {
                    const double t = size * along(random);
                    points.Add(CMaPoint(start[0] + t * direction[0], start[1] + t * direction[1],
                                        start[2] + t * direction[2]));
                }
                ExpectNeitherPlaneNorCircle(points);
                EXPECT_NO_THROW(CMaLine().Fit(points));
            }
}

TEST(FitFailures, ACoordinateThatIsNotFiniteIsFoundWhereverItIs) {
    // The search takes four points at a time. These counts give no, one and several groups, with and without a
    // remainder.
    for (const std::size_t count : {3U, 4U, 5U, 8U, 9U, 15U, 17U, 40U}) {
        std::vector<Coordinates> points;
        for (std::size_t i = 0; i < count; ++i) {
            const double angle = 6.0 * static_cast<double>(i) / static_cast<double>(count);
            points.push_back({std::cos(angle), std::sin(angle), 0.5});
        }
        for (std::size_t i = 0; i < count; ++i)
            for (std::size_t axis = 0; axis < 3; ++axis)
                for (const double bad : {notANumber, infinity, -infinity}) {
                    std::vector<Coordinates> spoilt = points;
                    spoilt[i][axis] = bad;
                    SCOPED_TRACE(testing::Message() << "point " << i << " of " << count);
                    ExpectNoFit(ArrayOf(spoilt));
                }
    }
}

TEST(FitFailures, ACoordinateThatIsNotFiniteIsFoundAmongManyPoints) {
    CMaPointArray points;
    for (int i = 0; i < 100'000; ++i) points.Add(CMaPoint(std::cos(0.001 * i), std::sin(0.001 * i), 1.0));
    points.Add(CMaPoint(0.0, notANumber, 1.0));
    ExpectNoFit(points);
}

TEST(FitFailures, RepetitionsOfTwoPointsGiveNoPlaneAndNoCircle) {
    const Coordinates one = {0.1, 0.2, 0.3}, other = {-7.0 / 3.0, 1e-3, 12.7};
    for (const std::size_t count : {2U, 3U, 4U, 9U, 40U, 1000U})
        for (const std::size_t ofOther : {std::size_t{1}, count / 2, count - 1}) {
            std::vector<Coordinates> points(count, one);
            std::fill_n(points.begin(), ofOther, other);
            const CMaPointArray array = ArrayOf(points);
            SCOPED_TRACE(testing::Message() << ofOther << " of " << count);
            EXPECT_NO_THROW(CMaLine().Fit(array));
            ExpectNeitherPlaneNorCircle(array);
        }
}

TEST(FitFailures, ThreePointsNearlyOnALineGiveTheirCircumcircleOrNone) {
    // A point above the middle of a chord of length 2.
    int circles = 0;
    for (double height = 1.0; height > 1e-20; height *= 0.1) {
        CMaCircle circle(1.0);
        try {
            circle.Fit(ArrayOf({{-1.0, 0.0, 0.0}, {0.0, height, 0.0}, {1.0, 0.0, 0.0}}), 1000);
        } catch (const GeometryError& error) {
            EXPECT_EQ(error.GetReason(), impossible) << height;
            EXPECT_LT(height, 1e-14);
            continue;
        }
        ++circles;
        const double radius = (1.0 + height * height) / (2.0 * height);
        constexpr double rounding = 1e-15; // of the points; it is divided by the height
        EXPECT_NEAR(circle.GetRadius() / radius, 1.0, rounding * (1.0 + 1.0 / height)) << height;
        EXPECT_LT(DirectionError(circle.GetNormal(), {0.0, 0.0, 1.0}), 1e-15) << height;
    }
    EXPECT_GE(circles, 14);
}

TEST(FitFailures, PointsThatFormNoCircleEndTheFitSoon) {
    // They may have a circle or none. In both cases the fit must end soon, and a circle must be finite.
    constexpr long atMost = 5000; // see CMaCircle::Fit
    std::mt19937_64 random(79);
    std::normal_distribution<double> normal;
    const auto whole = [&](int size) { return static_cast<double>(static_cast<int>(random() % 1000) % size); };
    const auto pointOf = [&](int kind, double noise, int i, int count) {
        const double angle = 2.0 * std::numbers::pi * i / count, rho = i % 2 == 0 ? 1.0 : 1e-3;
        if (kind == 0) return CMaPoint(normal(random), normal(random), normal(random));
        if (kind == 1) return CMaPoint(whole(13), whole(5), whole(3));
        if (kind == 2) return CMaPoint(whole(3), whole(3), whole(2));
        if (kind == 3) return CMaPoint(normal(random), noise * normal(random), noise * normal(random)); // near a line
        // Symmetric points: no direction of the centre is better than another.
        return CMaPoint(rho * std::cos(angle), rho * std::sin(angle), 0.0);
    };
    for (int round = 0; round < 2500; ++round) {
        SCOPED_TRACE("seed 79, round " + std::to_string(round));
        CMaPointArray points;
        const int count = 3 + round % 21;
        const double noise = std::pow(10.0, -(round % 13));
        for (int i = 0; i < count; ++i) points.Add(pointOf(round % 5, noise, i, count));
        CMaCircle circle(1.0);
        IsFitted([&] { circle.Fit(points, atMost); });
        ExpectPlaceAndDirection(circle.GetCentre(), circle.GetNormal());
        EXPECT_TRUE(std::isfinite(circle.GetRadius()) && circle.GetRadius() > 0.0);
    }
}
