#include "tests/maths/GeometryChecks.h"

#include <limits>

using namespace qmv40;

namespace {

constexpr long iterationLimit = 200000;

CMaCircle Fitted(const std::vector<Coordinates>& points) {
    CMaCircle circle(1.0);
    circle.Fit(ArrayOf(points), iterationLimit);
    return circle;
}

/// The sum of squared distances, by its definition.
double SumOfSquares(const std::vector<Coordinates>& points, const CMaVector& centre, const CMaVector& unnormalised,
                    double radius) {
    const CMaVector normal = Unit(unnormalised);
    double sum = 0.0;
    for (const Coordinates& p : points) {
        const CMaVector arm = Difference(VectorOf(p), centre);
        const double height = arm % normal;
        const double off = Difference(arm, normal * height).Magnitude() - radius;
        sum += height * height + off * off;
    }
    return sum;
}

struct SampledArc {
    double radius, degrees, noise;
    int count;
    const char* why;
};

constexpr SampledArc arcs[] = {
    {100.0, 360.0, 1e-3, 7, "a whole circle"},
    {100.0, 90.0, 1e-3, 12, "a tilt capture"},
    {100.0, 60.0, 0.0, 5, "no noise"},
    {50.0, 180.0, 0.5, 9, "coarse"},
    {500.0, 30.0, 1e-4, 40, "short"},
    {0.02, 120.0, 1e-6, 6, "small"},
    {3000.0, 45.0, 1e-2, 3, "the smallest number of points"},
    {100.0, 10.0, 0.01, 30, "noise of 3 % of the sagitta"},
};

std::vector<Coordinates> PointsOn(const SampledArc& arc, std::mt19937_64& random, const CMaVector& centre) {
    std::normal_distribution<double> noise(0.0, 1.0);
    const RandomFrame frame(random);
    std::vector<Coordinates> points;
    for (int i = 0; i < arc.count; ++i) {
        const double angle = arc.degrees * std::numbers::pi / 180.0 * i / arc.count;
        const double rho = arc.radius + arc.noise * noise(random);
        const Coordinates p = frame.At(rho * std::cos(angle), rho * std::sin(angle), arc.noise * noise(random));
        points.push_back(CoordinatesOf(VectorOf(p) + centre));
    }
    return points;
}

/// The effect on the centre of rounding coordinates of this `size`. It grows with the inverse square of the arc's
/// angle.
double Rounding(const SampledArc& arc, double size) {
    const double angle = std::min(arc.degrees * std::numbers::pi / 180.0, 2.0);
    constexpr double roundings = 50.0 * std::numeric_limits<double>::epsilon();
    return roundings * (size + arc.radius) * 16.0 / (angle * angle);
}

void ExpectSameCircle(const CMaCircle& circle, const CMaVector& centre, const CMaVector& normal, double radius,
                      double tolerance) {
    EXPECT_LE(Distance(circle.GetCentre().To3DVector(), centre), tolerance);
    EXPECT_NEAR(circle.GetRadius(), radius, tolerance);
    EXPECT_LE(DirectionError(circle.GetNormal(), normal), 4.0 * tolerance / radius);
}

/// Calls `check(arc, points)` for many random sets of points.
template <typename Check> void ForManyArcs(unsigned seed, const Check& check) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> place(-1.0, 1.0);
    for (int round = 0; round < 25; ++round)
        for (const SampledArc& arc : arcs) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round) + ": " + arc.why);
            const double away = 5.0 * arc.radius;
            const CMaVector centre(away * place(random), away * place(random), away * place(random));
            check(arc, PointsOn(arc, random, centre));
        }
}

double SizeOf(const std::vector<Coordinates>& points) {
    double size = 0.0;
    for (const Coordinates& p : points) size = std::max(size, VectorOf(p).Magnitude());
    return size;
}

} // namespace

TEST(Circle, HasItsFirstRadiusAboutTheOriginBeforeAnyFit) {
    ExpectSameCircle(CMaCircle(1.0), {0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 1.0, 0.0);
    EXPECT_EQ(Fitted({{3.0, 0.0, 0.0}, {0.0, 3.0, 0.0}, {-3.0, 0.0, 0.0}}).GetRadius(), 3.0);
}

TEST(Circle, IsFittedWhereTheSumOfCoordinatesOverflows) {
    constexpr double distance = 1.2e308, radius = 1e300;
    const CMaCircle circle = Fitted({{distance + radius, distance, distance},
                                     {distance, distance + radius, distance},
                                     {distance - radius, distance, distance}});
    ExpectSameCircle(circle, {distance, distance, distance}, {0.0, 0.0, 1.0}, radius, 1e-15 * distance);
}

TEST(Circle, IsTheOneThatIsKnownForSymmetricPoints) {
    /// Eight points round the Z axis, alternately off the circle of radius 10 by plus and minus these lengths.
    const auto eight = [](double outward, double upward) {
        std::vector<Coordinates> points;
        for (int i = 0; i < 8; ++i) {
            const double angle = std::numbers::pi / 4.0 * i, sign = i % 2 == 0 ? 1.0 : -1.0,
                         rho = 10.0 + sign * outward;
            points.push_back({rho * std::cos(angle), rho * std::sin(angle), sign * upward});
        }
        return points;
    };
    struct {
        std::vector<Coordinates> points;
        CMaVector centre;
        double radius;
        const char* why;
    } const cases[] = {
        {{{0.0, 0.0, 7.0}, {3.0, 0.0, 7.0}, {0.0, 4.0, 7.0}}, {1.5, 2.0, 7.0}, 2.5, "the circumcircle of a triangle"},
        {eight(1.0, 0.0), {0.0, 0.0, 0.0}, 10.0, "alternately outside and inside"},
        {eight(0.0, 0.5), {0.0, 0.0, 0.0}, 10.0, "alternately above and below"},
    };
    constexpr double roundings = 1e-13; // of numbers of about 10
    for (const auto& [points, centre, radius, why] : cases) {
        SCOPED_TRACE(why);
        ExpectSameCircle(Fitted(points), centre, {0.0, 0.0, 1.0}, radius, roundings);
    }
}

namespace {

/// A mapping of space that maps every circle to a circle.
struct Similarity {
    const char* why;
    double factor;
    CMaVector x, y, z; ///< the images of the axes, without the factor
    CMaVector shift;

    CMaVector Turned(const CMaVector& v) const { return x * v[0] + y * v[1] + z * v[2]; }
    CMaVector Of(const CMaVector& v) const { return Turned(v) * factor + shift; }
};

std::vector<Similarity> Similarities() {
    std::mt19937_64 random(5);
    const RandomFrame frame(random);
    const CMaVector x(1.0, 0.0, 0.0), y(0.0, 1.0, 0.0), z(0.0, 0.0, 1.0), nowhere(0.0, 0.0, 0.0);
    return {{"shifted", 1.0, x, y, z, {-300.0, 0.1, 2000.0 / 3.0}},
            {"turned", 1.0, frame.first, frame.second, frame.third, nowhere},
            {"mirrored", 1.0, y, x, z * -1.0, nowhere},
            {"a third", 1.0 / 3.0, x, y, z, nowhere},
            {"reflected and enlarged", -7.0, x, y, z, nowhere},
            {"very large", 1e100, x, y, z, nowhere},
            {"very small", 1e-100, x, y, z, nowhere}};
}

} // namespace

TEST(Circle, MovesTurnsAndGrowsWithItsPoints) {
    ForManyArcs(12, [](const SampledArc& arc, const std::vector<Coordinates>& points) {
        const CMaCircle circle = Fitted(points);
        for (const Similarity& one : Similarities()) {
            SCOPED_TRACE(one.why);
            std::vector<Coordinates> mapped;
            for (const Coordinates& p : points) mapped.push_back(CoordinatesOf(one.Of(VectorOf(p))));
            const double scale = std::fabs(one.factor);
            ExpectSameCircle(Fitted(mapped), one.Of(circle.GetCentre().To3DVector()), one.Turned(circle.GetNormal()),
                             circle.GetRadius() * scale, Rounding(arc, SizeOf(mapped) / scale) * scale);
        }
    });
}

TEST(Circle, GrowsWithItsPointsToTheLastBitWhenTheyAreDoubled) {
    ForManyArcs(20, [](const SampledArc&, const std::vector<Coordinates>& points) {
        const CMaCircle circle = Fitted(points);
        for (const double factor : {2.0, 0x1p-30, 0x1p500}) {
            std::vector<Coordinates> scaled;
            for (const Coordinates& p : points) scaled.push_back({p[0] * factor, p[1] * factor, p[2] * factor});
            const CMaCircle other = Fitted(scaled);
            EXPECT_EQ(Distance(other.GetCentre().To3DVector(), circle.GetCentre().To3DVector() * factor), 0.0);
            EXPECT_EQ(Distance(other.GetNormal(), circle.GetNormal()), 0.0);
            EXPECT_EQ(other.GetRadius(), circle.GetRadius() * factor);
        }
    });
}

TEST(Circle, DependsNeitherOnTheOrderNorOnTheRepetitionOfAllPoints) {
    ForManyArcs(15, [](const SampledArc& arc, const std::vector<Coordinates>& points) {
        const CMaCircle circle = Fitted(points);
        std::vector<Coordinates> other(points.rbegin(), points.rend());
        std::mt19937_64 random(6);
        for (int i = 0; i < 3; ++i) {
            ExpectSameCircle(Fitted(other), circle.GetCentre().To3DVector(), circle.GetNormal(), circle.GetRadius(),
                             Rounding(arc, SizeOf(points)));
            std::shuffle(other.begin(), other.end(), random);
            if (i == 1) other.insert(other.end(), points.begin(), points.end());
        }
    });
}

TEST(Circle, SurvivesCoordinatesOfAnySize) {
    const std::vector<Coordinates> unit = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {-1.0, 0.0, 0.0}, {0.6, 0.8, 0.0}};
    for (const double size : {1e300, 1e-300, 0x1.8p1022, 0x1p-1060}) {
        std::vector<Coordinates> points;
        for (const Coordinates& p : unit) points.push_back({p[0] * size, p[2] * size, p[1] * size});
        const CMaCircle circle = Fitted(points);
        const double tolerance = std::max(1e-14, std::numeric_limits<double>::denorm_min() * 8.0 / size);
        EXPECT_NEAR(circle.GetRadius() / size, 1.0, tolerance) << size;
        EXPECT_LT(circle.GetCentre().To3DVector().Magnitude() / size, tolerance) << size;
        EXPECT_LT(DirectionError(circle.GetNormal(), {0.0, 1.0, 0.0}), 1e-14) << size;
    }
}

TEST(Circle, FitsArcsOfAThousandthOfADegree) {
    const double radius = 1000.0;
    std::vector<Coordinates> points;
    for (int i = -8; i <= 8; ++i) {
        const double along = i / 1024.0;
        points.push_back({along, 0.0, radius - std::sqrt(radius * radius - along * along)});
    }
    const CMaCircle circle = Fitted(points);
    // The sagitta is 3e-8. The subtraction above gives it with an error of about 1e-13.
    EXPECT_NEAR(circle.GetRadius(), radius, radius * 1e-5);
    EXPECT_LT(DirectionError(circle.GetNormal(), {0.0, 1.0, 0.0}), 1e-5);
}

TEST(Circle, UsesAllOfManyPoints) {
    // So many points that the circle of a sample is good too, but the circle of all points is better.
    std::mt19937_64 random(19);
    std::vector<Coordinates> points = PointsOn({100.0, 90.0, 0.01, 70'000, ""}, random, {1000.0, -500.0, 30.0});
    const CMaCircle circle = Fitted(points);
    const CMaVector centre = circle.GetCentre().To3DVector(), normal = circle.GetNormal();
    const double best = SumOfSquares(points, centre, normal, circle.GetRadius());
    constexpr double step = 1e-6; // a hundredth of the uncertainty of a sample of several thousand points
    for (int axis = 0; axis < 3; ++axis)
        for (const double sign : {1.0, -1.0}) {
            CMaVector shift(0.0, 0.0, 0.0);
            shift[axis] = sign * step;
            EXPECT_GT(SumOfSquares(points, centre + shift, normal, circle.GetRadius()), best);
            EXPECT_GE(SumOfSquares(points, centre, normal + shift * 0.01, circle.GetRadius()), best);
            EXPECT_GT(SumOfSquares(points, centre, normal, circle.GetRadius() + sign * step), best);
        }
}

TEST(Circle, DoesNotChangeItsPoints) {
    const CMaPointArray points = ArrayOf({{1.0, 0.1, 0.0}, {0.0, 1.0, 0.2}, {-1.0, 0.0, 0.0}, {0.6, 0.8, 0.0}});
    const CMaPointArray before = points;
    CMaCircle circle(1.0);
    circle.Fit(points, iterationLimit);
    for (int i = 0; i < points.GetSize(); ++i) EXPECT_EQ(Distance(points[i], before[i]), 0.0);
}

TEST(Circle, StopsAtItsLimit) {
    const std::vector<Coordinates> points = {{1.0, 0.1, 0.0}, {0.0, 1.0, 0.2}, {-1.0, 0.0, 0.0}, {0.6, 0.8, 0.0}};
    const CMaCircle right = Fitted(points);
    for (const long limit : {0L, -1L, std::numeric_limits<long>::min(), 1L}) {
        CMaCircle circle(4.0);
        EXPECT_TRUE(FailsWith(GeometryError::Reason::LimitReached, [&] { circle.Fit(ArrayOf(points), limit); }))
            << limit;
        EXPECT_EQ(circle.GetRadius(), 4.0) << limit;
    }
    for (const long limit : {10L, std::numeric_limits<long>::max()}) {
        CMaCircle circle(1.0);
        EXPECT_NO_THROW(circle.Fit(ArrayOf(points), limit)) << "clear circles need fewer than 10 evaluations";
        EXPECT_EQ(circle.GetRadius(), right.GetRadius());
    }
}

TEST(Circle, CanBeMovedAsAWhole) {
    constexpr double fewRoundings = 1e-14;
    CMaCircle circle = Fitted({{3.0, 0.0, 7.0}, {0.0, 3.0, 7.0}, {-3.0, 0.0, 7.0}});
    CMaNonLinearGeometry& shape = circle;
    shape.Translate(1.0, 2.0, -7.0);
    ExpectSameCircle(circle, {1.0, 2.0, 0.0}, {0.0, 0.0, 1.0}, 3.0, fewRoundings);
    shape.Translate(CMaPoint(0.0, -2.0, 0.0));
    ExpectSameCircle(circle, {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 3.0, fewRoundings);
    shape.Rotate(90.0, CMaGeometry::Y);
    ExpectSameCircle(circle, {0.0, 0.0, -1.0}, {1.0, 0.0, 0.0}, 3.0, fewRoundings);
    shape.Rotate(90.0, CMaVector(5.0, 0.0, 0.0));
    ExpectSameCircle(circle, {0.0, 1.0, 0.0}, {1.0, 0.0, 0.0}, 3.0, fewRoundings);
    shape.Rotate(90.0, CMaGeometry::Z, CMaPoint(1.0, 1.0, 0.0));
    ExpectSameCircle(circle, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, 3.0, fewRoundings);
    shape.Rotate(-120.0, CMaVector(1.0, 1.0, 1.0), CMaPoint(1.0, 0.0, 5.0));
    ExpectSameCircle(circle, {1.0, -5.0, 5.0}, {1.0, 0.0, 0.0}, 3.0, fewRoundings);
}

TEST(Circle, IsNotRotatedAboutADirectionOfLength0) {
    CMaCircle circle(2.0);
    for (const double component :
         {0.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_TRUE(
            FailsWith(GeometryError::Reason::Impossible, [&] { circle.Rotate(10.0, CMaVector(component, 0.0, 0.0)); }));
    ExpectSameCircle(circle, {0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 2.0, 1e-15);
}
