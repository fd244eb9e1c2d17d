#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "tests/maths/GeometryChecks.h"

#include <limits>

using namespace qmv40;

namespace {

constexpr CMaGeometry::EAxisType axes[] = {CMaGeometry::X, CMaGeometry::Y, CMaGeometry::Z};
constexpr double numbersOfManySizes[] = {0.0, -0.0, 1.0, -1.0 / 3.0, 1e300, -1e-300, 5e-324, 123456.789};

CMaVector Turned(CMaVector v, double degrees, CMaGeometry::EAxisType axis, const CMaPoint& centre = {0.0, 0.0, 0.0}) {
    v.Rotate(degrees, axis, centre);
    return v;
}

bool SameBits(const CMaVector& a, const CMaVector& b) {
    return ::SameBits(a[0], b[0]) && ::SameBits(a[1], b[1]) && ::SameBits(a[2], b[2]);
}

} // namespace

TEST(Rotate, TakesEachAxisTowardsTheNextWhenTheAngleIsPositive) {
    const CMaVector unit[] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    for (int axis = 0; axis < 3; ++axis) {
        const CMaVector& from = unit[(axis + 1) % 3];
        const CMaVector& to = unit[(axis + 2) % 3];
        EXPECT_EQ(Distance(Turned(from, 90.0, axes[axis]), to), 0.0) << axis;
        EXPECT_EQ(Distance(Turned(to, -90.0, axes[axis]), from), 0.0) << axis;
    }
}

TEST(Rotate, NumbersTheAxesXYZFrom0To2) {
    static_assert(CMaGeometry::X == 0 && CMaGeometry::Y == 1 && CMaGeometry::Z == 2);
    const auto beyond = static_cast<CMaGeometry::EAxisType>(3);
    EXPECT_TRUE(FailsWith(GeometryError::Reason::Impossible, [&] { Turned({1.0, 2.0, 3.0}, 10.0, beyond); }));
}

TEST(Rotate, AgreesWithTheClosedForm) {
    constexpr double fewRoundings = 1e-15;
    const double half = 0.5, root = std::sqrt(3.0) / 2.0, diagonal = std::sqrt(0.5);
    struct {
        double degrees, cosine, sine;
    } const cases[] = {{30.0, root, half},   {45.0, diagonal, diagonal},     {60.0, half, root},
                       {120.0, -half, root}, {-135.0, -diagonal, -diagonal}, {300.0, half, -root},
                       {390.0, root, half},  {-750.0, root, -half}};
    for (const auto& [degrees, cosine, sine] : cases) {
        const CMaVector turned = Turned({2.0, 0.0, 5.0}, degrees, CMaGeometry::Z);
        EXPECT_NEAR(turned[0], 2.0 * cosine, 2.0 * fewRoundings) << degrees;
        EXPECT_NEAR(turned[1], 2.0 * sine, 2.0 * fewRoundings) << degrees;
    }
}

TEST(Rotate, By0OrWholeTurnsKeepsEveryBit) {
    for (const double x : numbersOfManySizes)
        for (const double y : numbersOfManySizes)
            for (const auto axis : axes)
                for (const double degrees : {0.0, -0.0, 360.0, -720.0, 3.6e15})
                    EXPECT_TRUE(SameBits(Turned({x, y, 0.1}, degrees, axis, {7.0, 0.3, -2.0}), {x, y, 0.1}))
                        << x << ' ' << y << ' ' << degrees;
}

TEST(Rotate, KeepsTheBitsOfTheComponentAlongTheAxis) {
    for (const double along : numbersOfManySizes)
        for (int axis = 0; axis < 3; ++axis) {
            CMaVector v(1.0, 2.0, 3.0);
            v[axis] = along;
            EXPECT_TRUE(::SameBits(Turned(v, 33.3, axes[axis], {0.1, 0.2, 0.3})[axis], along)) << along;
        }
    EXPECT_TRUE(SameBits(Turned({0.0, 0.0, 1.0}, 77.0, CMaGeometry::Z), {0.0, 0.0, 1.0})) << "the axis itself";
}

TEST(Rotate, ByAnyNumberOfQuarterTurnsIsExact) {
    const CMaVector v(0.1, 0.7, 0.3);
    EXPECT_EQ(Distance(Turned(v, 90.0, CMaGeometry::Z), {-0.7, 0.1, 0.3}), 0.0);
    EXPECT_EQ(Distance(Turned(v, 180.0, CMaGeometry::Z), {-0.1, -0.7, 0.3}), 0.0);
    EXPECT_EQ(Distance(Turned(v, 270.0, CMaGeometry::Z), {0.7, -0.1, 0.3}), 0.0);
    EXPECT_EQ(Distance(Turned(v, -90.0, CMaGeometry::Z), {0.7, -0.1, 0.3}), 0.0);
    EXPECT_EQ(Distance(Turned(v, 3.6e14 + 90.0, CMaGeometry::Z), {-0.7, 0.1, 0.3}), 0.0);
}

TEST(Rotate, TurnsAboutTheGivenCentre) {
    EXPECT_EQ(Distance(Turned({3.0, 2.0, 9.0}, 90.0, CMaGeometry::Z, {1.0, 2.0, 100.0}), {1.0, 4.0, 9.0}), 0.0);
}

TEST(Rotate, IsReversibleAdditiveAndKeepsLengths) {
    constexpr double fewRoundings = 2e-15; // of vectors of length below 2
    constexpr unsigned seed = 4711;
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> angle(-400.0, 400.0), component(-1.0, 1.0);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE("seed 4711, round " + std::to_string(i));
        const CMaVector v(component(random), component(random), component(random));
        const double a = angle(random), b = angle(random);
        const auto axis = axes[i % 3];
        EXPECT_LT(Distance(Turned(Turned(v, a, axis), -a, axis), v), fewRoundings);
        constexpr double angleRounding =
            400.0 * 2.3e-16 * 2.0; // the rounding of a + b in degrees; in radians it is less
        EXPECT_LT(Distance(Turned(Turned(v, a, axis), b, axis), Turned(v, a + b, axis)), fewRoundings + angleRounding);
        EXPECT_NEAR(Turned(v, a, axis).Magnitude(), v.Magnitude(), fewRoundings);
    }
}

TEST(Rotate, ByAnAngleThatIsNotFiniteGivesNotANumber) {
    for (const double degrees : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        const CMaVector turned = Turned({1.0, 2.0, 3.0}, degrees, CMaGeometry::Z);
        EXPECT_TRUE(std::isnan(turned[0]) && std::isnan(turned[1]));
        EXPECT_EQ(turned[2], 3.0);
    }
}

namespace {

/// The line through the origin and (x, 0, z), and the plane z = 0.
double AngleOf(double x, double z) {
    CMaLine line;
    line.Fit(ArrayOf({{-x, 0.0, -z}, {x, 0.0, z}}));
    return line.AngleWith(CMaPlane());
}

/// In degrees: 4e-16 radians plus the rounding of a number of up to 90.
constexpr double angleTolerance = 4e-16 * 57.3 + 1.5e-14;

} // namespace

TEST(AngleWith, IsUnsignedFrom0To90Degrees) {
    EXPECT_EQ(AngleOf(1.0, 0.0), 0.0);
    EXPECT_EQ(AngleOf(0.0, 1.0), 90.0);
    EXPECT_NEAR(AngleOf(1.0, 1.0), 45.0, angleTolerance);
    EXPECT_NEAR(AngleOf(1.0, -1.0), 45.0, angleTolerance);
    EXPECT_NEAR(AngleOf(-1.0, 1.0), 45.0, angleTolerance);
    EXPECT_NEAR(AngleOf(std::sqrt(3.0), 1.0), 30.0, angleTolerance);
}

TEST(AngleWith, IsAccurateAtBothEnds) {
    constexpr double degree = 180.0 / std::numbers::pi;
    for (double t = 0.5; t > 1e-17; t *= 0.37) {
        EXPECT_NEAR(AngleOf(1.0, t), std::atan(t) * degree, angleTolerance) << "flat " << t;
        EXPECT_NEAR(AngleOf(t, 1.0), 90.0 - std::atan(t) * degree, angleTolerance) << "steep " << t;
        EXPECT_LE(AngleOf(t, 1.0), 90.0);
    }
}

TEST(AngleWith, DoesNotChangeWhenLineAndPlaneAreTurnedTogether) {
    constexpr double tolerance = 1e-13; // degrees: the rounding of two fits of points of size 100
    std::mt19937_64 random(99);
    std::uniform_real_distribution<double> slope(0.0, 1.0);
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE("seed 99, round " + std::to_string(i));
        const RandomFrame frame(random);
        const double t = std::pow(slope(random), 8.0);
        CMaPlane plane;
        plane.Fit(ArrayOf({frame.At(100.0, 0.0, 0.0), frame.At(0.0, 100.0, 0.0), frame.At(-100.0, -100.0, 0.0)}));
        CMaLine line;
        line.Fit(ArrayOf({frame.At(-100.0, 0.0, -100.0 * t), frame.At(100.0, 0.0, 100.0 * t)}));
        EXPECT_NEAR(line.AngleWith(plane), std::atan(t) * 180.0 / std::numbers::pi, tolerance);
    }
}
