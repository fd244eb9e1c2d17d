#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "tests/maths/AxisCertificate.h"
#include "tests/maths/CircleCertificate.h"
#include "tests/support/Trials.h"

#include <limits>
#include <string>

using namespace qmv40;

/// Fits of random points of many kinds. Each result is compared with the exact one (32 digits). The allowed error is a
/// multiple of the floor: the error that the rounding of the points alone can cause.

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();
/// The allowed error in floors: the arithmetic has rounding errors too, and a floor is a random sample.
constexpr double floors = 20.0;
/// Roundings of the result, for its conversion back to the caller's frame and unit.
constexpr double roundings = 4.0;
/// In the unit of the points, if they form no clear shape: far below the resolution of any probe.
constexpr double alwaysGoodEnough = 1e-9;

using Random = std::mt19937_64;

template <typename Value, std::size_t Count> Value OneOf(const Value (&values)[Count], Random& random) {
    return values[random() % Count];
}

double LargestOf(const std::vector<Coordinates>& points) {
    double largest = 0.0;
    for (const Coordinates& p : points)
        for (const double coordinate : p) largest = std::max(largest, std::fabs(coordinate));
    return largest;
}

/// How the points are distributed along the arc, and how they deviate from it.
enum class Kind { Even, Unbalanced, Outlier, OutOfPlane, Alternating, NearlyCollinear };

constexpr Kind kinds[] = {Kind::Even,       Kind::Unbalanced,  Kind::Outlier,
                          Kind::OutOfPlane, Kind::Alternating, Kind::NearlyCollinear};
constexpr const char* kindNames[] = {"even",         "unbalanced",  "outlier",
                                     "out of plane", "alternating", "nearly collinear"};

struct DrawnArc {
    Kind kind;
    double degrees, radius, noise;
    double away; ///< distance of the circle's centre from the origin
    int count;

    static DrawnArc Draw(Random& random) {
        constexpr double degrees[] = {360.0, 270.0, 180.0, 90.0, 60.0, 45.0, 30.0, 20.0, 10.0, 5.0, 2.0, 1.0};
        constexpr double radii[] = {1e-2, 0.1, 1.0, 10.0, 100.0, 1e3, 1e4, 1e5};
        constexpr double noises[] = {0.0, 1e-6, 1e-4, 1e-3, 1e-2, 0.1};
        constexpr double aways[] = {0.0, 1.0, 1e3, 1e6};
        constexpr int counts[] = {3, 4, 5, 6, 7, 8, 12, 20, 40, 150};
        return {OneOf(kinds, random),  OneOf(degrees, random), OneOf(radii, random),
                OneOf(noises, random), OneOf(aways, random),   OneOf(counts, random)};
    }

    double Angle() const {
        const double whole = degrees * std::numbers::pi / 180.0;
        return kind == Kind::NearlyCollinear ? 0.05 * whole : whole;
    }
    double Sagitta() const { return radius * (1.0 - std::cos(std::min(0.5 * Angle(), std::numbers::pi))); }
    /// The standard deviation of the points that deviate most.
    double LargestNoise() const {
        const double most = kind == Kind::Outlier ? 30.0 : kind == Kind::OutOfPlane ? 10.0 : 1.0;
        return most * noise;
    }
    /// The sagitta is far above noise and rounding.
    bool IsClear() const { return Sagitta() > 10.0 * LargestNoise() + 1e4 * epsilon * (radius + away); }

    std::string Describe() const {
        return std::string(kindNames[static_cast<int>(kind)]) + ", " + std::to_string(degrees) + " degrees, radius " +
               std::to_string(radius) + ", noise " + std::to_string(noise) + ", " + std::to_string(away) + " away, " +
               std::to_string(count) + " points";
    }

    std::vector<Coordinates> Points(Random& random) const {
        std::normal_distribution<double> normal;
        const RandomFrame frame(random), place(random);
        std::vector<Coordinates> points;
        for (int i = 0; i < count; ++i) {
            const double angle = Angle() * (Along(i, random) - 0.5);
            double outward = noise * normal(random), across = noise * normal(random);
            if (kind == Kind::Outlier && i == 0) outward *= 30.0;
            if (kind == Kind::OutOfPlane) across *= 10.0;
            if (kind == Kind::Alternating) outward = i % 2 == 0 ? noise : -noise;
            const double rho = radius + outward;
            const CMaVector p = VectorOf(frame.At(rho * std::cos(angle), rho * std::sin(angle), across));
            points.push_back(CoordinatesOf(p + place.first * away));
        }
        return points;
    }

private:
    double Along(int i, Random& random) const {
        std::uniform_real_distribution<double> anywhere(0.0, 1.0);
        switch (kind) {
        case Kind::Even:
        case Kind::Alternating:
            return (i + 0.5) / count;
        case Kind::Unbalanced:
            return i % 5 != 0 ? 0.2 * anywhere(random) : anywhere(random);
        default:
            return anywhere(random);
        }
    }
};

void ExpectRightCircle(const DrawnArc& arc, const std::vector<Coordinates>& points) {
    constexpr long evaluationLimit = 1000;
    CMaCircle circle(1.0);
    try {
        circle.Fit(ArrayOf(points), evaluationLimit);
    } catch (const GeometryError& failure) {
        EXPECT_EQ(failure.GetReason(), GeometryError::Reason::Impossible);
        EXPECT_FALSE(arc.IsClear());
        return;
    }
    const CircleCertificate certificate(points, circle);
    ASSERT_TRUE(certificate.isMinimum);
    const double always = arc.IsClear() ? 0.0 : alwaysGoodEnough;
    const double rounding = roundings * epsilon * std::max(LargestOf(points), circle.GetRadius());
    const CircleCertificate::Difference &error = certificate.error, &floor = certificate.floor;
    EXPECT_LE(error.centre, std::max(floors * floor.centre + rounding, always));
    EXPECT_LE(error.radius, std::max(floors * floor.radius + rounding, always));
    EXPECT_LE(error.normal, std::max(floors * floor.normal + roundings * epsilon, always));
}

} // namespace

TEST(FitAccuracy, CirclesAreRightToTheRoundingOfTheirPoints) {
    Random random(41);
    for (int round = 0; round < Trials(600); ++round) {
        const DrawnArc arc = DrawnArc::Draw(random);
        SCOPED_TRACE("seed 41, round " + std::to_string(round) + ": " + arc.Describe());
        ExpectRightCircle(arc, arc.Points(random));
    }
}

TEST(FitAccuracy, AFitOfAClearCircleNeedsThreeEvaluations) {
    constexpr long evaluationLimit = 3;
    Random random(47);
    int clear = 0;
    for (int round = 0; round < 600; ++round) {
        const DrawnArc arc = DrawnArc::Draw(random);
        const std::vector<Coordinates> points = arc.Points(random);
        // With so little noise the initial guess is very near to the result.
        if (!arc.IsClear() || arc.Sagitta() < 1000.0 * arc.LargestNoise()) continue;
        ++clear;
        CMaCircle circle(1.0);
        EXPECT_NO_THROW(circle.Fit(ArrayOf(points), evaluationLimit))
            << "seed 47, round " << round << ": " << arc.Describe();
    }
    EXPECT_GT(clear, 100);
}

TEST(FitAccuracy, ErrorsOfACircleAreAsItsHeaderStates) {
    constexpr double bound = 3e-13, normalBound = 1e-15; // millimetres, radians: see CMaCircle::Fit
    Random random(48);
    double worst = 0.0, worstNormal = 0.0;
    for (int round = 0; round < Trials(300); ++round) {
        SCOPED_TRACE("seed 48, round " + std::to_string(round));
        const DrawnArc capture = {Kind::Even, 90.0, 180.0, 0.001, 1000.0, 40};
        const std::vector<Coordinates> points = capture.Points(random);
        CMaCircle circle(1.0);
        ASSERT_NO_THROW(circle.Fit(ArrayOf(points), 1000));
        const CircleCertificate certificate(points, circle);
        ASSERT_TRUE(certificate.isMinimum);
        worst = std::max({worst, certificate.error.centre, certificate.error.radius});
        worstNormal = std::max(worstNormal, certificate.error.normal);
    }
    EXPECT_LE(worst, bound);
    EXPECT_LE(worstNormal, normalBound);
    EXPECT_GE(worst, 0.1 * bound) << "the header could state a smaller bound";
}

TEST(FitAccuracy, APlaneFitBeforeTheCircleFitMovesTheCentre) {
    constexpr double statedRms = 7.0; // millimetres: see CMaCircle::Fit
    Random random(50);
    double squares = 0.0;
    constexpr int rounds = 300;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE("seed 50, round " + std::to_string(round));
        const CMaPointArray points = ArrayOf(DrawnArc{Kind::Even, 10.0, 180.0, 0.1, 0.0, 40}.Points(random));
        CMaPlane plane;
        ASSERT_NO_THROW(plane.Fit(points));
        CMaPointArray inPlane;
        for (int i = 0; i < points.GetSize(); ++i) inPlane.Add(points[i].ProjectionOn(plane));
        CMaCircle together(1.0), afterThePlane(1.0);
        ASSERT_NO_THROW(together.Fit(points, 1000));
        ASSERT_NO_THROW(afterThePlane.Fit(inPlane, 1000));
        squares += std::pow(Distance(together.GetCentre(), afterThePlane.GetCentre()), 2.0);
    }
    EXPECT_NEAR(std::sqrt(squares / rounds), statedRms, 1.0);
}

TEST(FitAccuracy, CirclesOfThousandsOfPointsAreRightToTheirRounding) {
    const DrawnArc arcs[] = {{Kind::Unbalanced, 90.0, 100.0, 1e-2, 1e3, 4000},
                             {Kind::Alternating, 1.0, 1e5, 0.1, 0.0, 4000},
                             {Kind::OutOfPlane, 360.0, 1e-2, 1e-4, 1.0, 4000}};
    Random random(42);
    for (const DrawnArc& arc : arcs) {
        SCOPED_TRACE("seed 42: " + arc.Describe());
        ExpectRightCircle(arc, arc.Points(random));
    }
}

namespace {

/// Points in a box with random directions.
struct Box {
    double length, width, height;
    double away; ///< distance of the box's centre from the origin
    int count;

    static Box Draw(Random& random) {
        constexpr double lengths[] = {1e-2, 1.0, 100.0, 1e5};
        constexpr double ratios[] = {1.0, 0.3, 1e-2, 1e-4, 1.5e-6};
        constexpr double heights[] = {0.0, 1e-6, 1e-3, 0.1, 0.5};
        constexpr double aways[] = {0.0, 1.0, 1e3, 1e6};
        constexpr int counts[] = {3, 4, 5, 8, 20, 40, 300};
        const double length = OneOf(lengths, random), width = length * OneOf(ratios, random);
        return {length, width, width * OneOf(heights, random), OneOf(aways, random), OneOf(counts, random)};
    }

    /// Its width is clearly larger than the rounding. (Its height is at most half of its width.)
    bool IsClear() const { return count > 3 && width > 1e4 * epsilon * (length + away); }

    std::string Describe() const {
        return std::to_string(length) + " x " + std::to_string(width) + " x " + std::to_string(height) + ", " +
               std::to_string(away) + " away, " + std::to_string(count) + " points";
    }

    std::vector<Coordinates> Points(Random& random) const {
        std::uniform_real_distribution<double> anywhere(-0.5, 0.5);
        const RandomFrame frame(random), place(random);
        std::vector<Coordinates> points;
        for (int i = 0; i < count; ++i) {
            const double u = length * anywhere(random), v = width * anywhere(random), w = height * anywhere(random);
            points.push_back(CoordinatesOf(VectorOf(frame.At(u, v, w)) + place.first * away));
        }
        return points;
    }
};

void ExpectRightAxis(const std::vector<Coordinates>& points, const AxisCertificate& certificate,
                     const CMaVector& direction) {
    EXPECT_TRUE(certificate.isBest);
    EXPECT_LE(certificate.pointError, roundings * epsilon * LargestOf(points));
    EXPECT_LE(certificate.directionError,
              floors * certificate.directionFloor + roundings * epsilon * (1.0 + certificate.likeness));
    EXPECT_NEAR(direction.Magnitude(), 1.0, roundings * epsilon);
}

/// Calls `check(points)` for many boxes whose shape is clear.
template <typename Check> void ForManyBoxes(unsigned seed, const Check& check) {
    Random random(seed);
    for (int round = 0; round < Trials(600); ++round) {
        const Box box = Box::Draw(random);
        const std::vector<Coordinates> points = box.Points(random);
        if (!box.IsClear()) continue;
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round) + ": " + box.Describe());
        check(points);
    }
}

} // namespace

TEST(FitAccuracy, LinesAreRightToTheRoundingOfTheirPoints) {
    ForManyBoxes(43, [](const std::vector<Coordinates>& points) {
        CMaLine line;
        ASSERT_NO_THROW(line.Fit(ArrayOf(points)));
        const AxisCertificate certificate(points, line.GetPoint(), line.GetDirection(), AxisCertificate::Longest);
        ExpectRightAxis(points, certificate, line.GetDirection());
    });
}

TEST(FitAccuracy, ALineIsRightWithAllPointsButOneAtOneEnd) {
    // Their mean is far from the middle of their extent: sums about the middle lose digits to cancellation.
    Random random(51);
    std::uniform_real_distribution<double> anywhere(-0.5, 0.5);
    for (int round = 0; round < 10; ++round) {
        SCOPED_TRACE("seed 51, round " + std::to_string(round));
        const RandomFrame frame(random);
        std::vector<Coordinates> points{frame.At(-100.0, 0.0, 0.0)};
        for (int i = 0; i < 3000; ++i) {
            const double u = 100.0 + anywhere(random), v = anywhere(random), w = anywhere(random);
            points.push_back(frame.At(u, v, w));
        }
        CMaLine line;
        ASSERT_NO_THROW(line.Fit(ArrayOf(points)));
        const AxisCertificate certificate(points, line.GetPoint(), line.GetDirection(), AxisCertificate::Longest);
        ExpectRightAxis(points, certificate, line.GetDirection());
    }
}

TEST(FitAccuracy, PlanesAreRightToTheRoundingOfTheirPoints) {
    ForManyBoxes(44, [](const std::vector<Coordinates>& points) {
        CMaPlane plane;
        ASSERT_NO_THROW(plane.Fit(ArrayOf(points)));
        const AxisCertificate certificate(points, plane.GetPoint(), plane.GetNormal(), AxisCertificate::Shortest);
        ExpectRightAxis(points, certificate, plane.GetNormal());
    });
}

TEST(FitAccuracy, ErrorsOfALineAndAPlaneAreAsTheirHeadersState) {
    constexpr double directionBound = 1e-15, pointBound = 2e-13; // radians, millimetres
    Random random(49);
    double worstDirection = 0.0, worstPoint = 0.0;
    const auto compare = [&](const std::vector<Coordinates>& points, const auto& fitted, const CMaVector& direction,
                             AxisCertificate::Axis axis) {
        const AxisCertificate certificate(points, fitted.GetPoint(), direction, axis);
        worstDirection = std::max(worstDirection, certificate.directionError);
        worstPoint = std::max(worstPoint, certificate.pointError);
    };
    for (int round = 0; round < Trials(300); ++round) {
        SCOPED_TRACE("seed 49, round " + std::to_string(round));
        const std::vector<Coordinates> onLine = Box{200.0, 0.002, 0.002, 1000.0, 40}.Points(random);
        CMaLine line;
        ASSERT_NO_THROW(line.Fit(ArrayOf(onLine)));
        compare(onLine, line, line.GetDirection(), AxisCertificate::Longest);
        const std::vector<Coordinates> onPlane = Box{200.0, 100.0, 0.002, 1000.0, 40}.Points(random);
        CMaPlane plane;
        ASSERT_NO_THROW(plane.Fit(ArrayOf(onPlane)));
        compare(onPlane, plane, plane.GetNormal(), AxisCertificate::Shortest);
    }
    EXPECT_LE(worstDirection, directionBound);
    EXPECT_LE(worstPoint, pointBound);
    EXPECT_GE(worstDirection, 0.1 * directionBound) << "the headers could state a smaller bound";
    EXPECT_GE(worstPoint, 0.1 * pointBound) << "the headers could state a smaller bound";
}
