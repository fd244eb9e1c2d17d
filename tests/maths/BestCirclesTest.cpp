#include "maths/CMaLine.h"
#include "tests/maths/GeometryChecks.h"
#include "tests/support/Trials.h"

#include <string>

using namespace qmv40;

/// The fitted circle is the global minimum, not only a local one. It is compared with the results of a plain
/// Levenberg-Marquardt method from many initial guesses.

namespace {

struct Candidate {
    CMaVector centre, normal;
    double radius;
};

using Row = std::array<double, 6>;

/// The residuals (distance from the plane; distance from the axis minus the radius) and their derivatives with respect
/// to the centre, two tilts of the normal and the radius.
struct Residuals {
    Residuals(const std::vector<Coordinates>& points, const Candidate& c, const CMaVector& first,
              const CMaVector& second) {
        for (const Coordinates& p : points) {
            const CMaVector arm = Difference(VectorOf(p), c.centre);
            const double height = arm % c.normal;
            const CMaVector spoke = arm + c.normal * -height, out = Unit(spoke);
            Add(height, {-c.normal[0], -c.normal[1], -c.normal[2], arm % first, arm % second, 0.0});
            Add(spoke.Magnitude() - c.radius,
                {-out[0], -out[1], -out[2], -height * (out % first), -height * (out % second), -1.0});
        }
    }

    void Add(double value, const Row& slopes) {
        sumOfSquares += value * value;
        for (std::size_t i = 0; i < 6; ++i) {
            gradient[i] += slopes[i] * value;
            for (std::size_t k = 0; k < 6; ++k) products[i][k] += slopes[i] * slopes[k];
        }
    }

    /// The Levenberg-Marquardt step, by Gaussian elimination. It is to be subtracted from the unknowns.
    Row Step(double damping) const {
        auto m = products;
        Row x = gradient;
        for (std::size_t i = 0; i < 6; ++i) m[i][i] *= 1.0 + damping;
        for (std::size_t i = 0; i < 6; ++i)
            for (std::size_t row = i + 1; row < 6; ++row) {
                const double factor = m[row][i] / m[i][i];
                for (std::size_t k = i; k < 6; ++k) m[row][k] -= factor * m[i][k];
                x[row] -= factor * x[i];
            }
        for (std::size_t i = 6; i-- > 0;) {
            for (std::size_t k = i + 1; k < 6; ++k) x[i] -= m[i][k] * x[k];
            x[i] /= m[i][i];
        }
        return x;
    }

    double sumOfSquares = 0.0;
    Row gradient{};
    std::array<Row, 6> products{};
};

double SumOfSquares(const std::vector<Coordinates>& points, const Candidate& c) {
    return Residuals(points, c, c.normal, c.normal).sumOfSquares;
}

double LeastSumNear(Candidate best, const std::vector<Coordinates>& points) {
    double damping = 1e-3;
    for (int i = 0; i < 60 && damping < 1e3; ++i) {
        const CMaVector first =
            Unit(best.normal * (std::fabs(best.normal[0]) < 0.6 ? CMaVector(1.0, 0.0, 0.0) : CMaVector(0.0, 1.0, 0.0)));
        const CMaVector second = best.normal * first;
        const Residuals here(points, best, first, second);
        const Row x = here.Step(damping);
        const Candidate next = {best.centre + CMaVector(-x[0], -x[1], -x[2]),
                                Unit(best.normal + first * -x[3] + second * -x[4]), best.radius - x[5]};
        const bool lower = next.radius > 0.0 && SumOfSquares(points, next) < here.sumOfSquares;
        if (lower) best = next;
        damping = lower ? std::max(0.1 * damping, 1e-6) : 10.0 * damping;
    }
    return SumOfSquares(points, best);
}

Candidate Fitted(const std::vector<Coordinates>& points) {
    CMaCircle circle(1.0);
    circle.Fit(ArrayOf(points), 5000);
    return {circle.GetCentre().To3DVector(), circle.GetNormal(), circle.GetRadius()};
}

/// The least sum of squares from 12 initial guesses, each a circle through three of the points.
double LeastSumKnown(const std::vector<Coordinates>& points, std::mt19937_64& random) {
    double least = std::numeric_limits<double>::infinity();
    for (int start = 0; start < 12; ++start) {
        const auto any = [&] { return points.data()[random() % points.size()]; };
        try {
            least = std::min(least, LeastSumNear(Fitted({any(), any(), any()}), points));
        } catch (const GeometryError&) {
            continue; // a point was drawn twice
        }
    }
    return least;
}

void ExpectTheBest(const std::vector<Coordinates>& points, std::mt19937_64& random) {
    constexpr double rounding = 1e-9; // relative; the sums of squares are at least 1e-10
    EXPECT_LE(SumOfSquares(points, Fitted(points)), LeastSumKnown(points, random) * (1.0 + rounding));
}

} // namespace

TEST(BestCircles, AreGlobalMinimaWhenNoiseIsBelowATenthOfTheSagitta) {
    std::mt19937_64 random(51);
    std::normal_distribution<double> normal;
    for (int round = 0; round < Trials(20); ++round)
        for (const double degrees : {5.0, 10.0, 30.0, 90.0, 180.0, 360.0})
            for (const double noiseOverSagitta : {0.01, 0.1}) {
                SCOPED_TRACE("seed 51, round " + std::to_string(round) + ": " + std::to_string(degrees) +
                             " degrees, noise " + std::to_string(noiseOverSagitta) + " of the sagitta");
                const double radius = 100.0, angle = degrees * std::numbers::pi / 180.0;
                const double noise =
                    noiseOverSagitta * radius * (1.0 - std::cos(std::min(0.5 * angle, std::numbers::pi)));
                const RandomFrame frame(random);
                std::vector<Coordinates> points;
                const int count = 5 + static_cast<int>(random() % 16);
                for (int i = 0; i < count; ++i) {
                    const double at = angle * ((i + 0.5) / count - 0.5), rho = radius + noise * normal(random);
                    points.push_back(frame.At(rho * std::cos(at), rho * std::sin(at), noise * normal(random)));
                }
                ExpectTheBest(points, random);
            }
}

TEST(BestCircles, AreGlobalMinimaWithAPointAtTheCentre) {
    // The direction from the centre to this point is undefined, and the sum of squares is equal in several directions.
    const std::vector<Coordinates> cases[] = {
        {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 0}},
        {{3, 4, 7}, {-3, -4, 7}, {4, -3, 7}, {-4, 3, 7}, {5, 0, 7}, {-5, 0, 7}, {0, 5, 7}, {0, -5, 7}, {0, 0, 7}},
        {{3, 4, 1}, {-3, -4, 1}, {4, -3, 1}, {-4, 3, 1}, {0, 0, 1}, {5, 0, 1}, {-5, 0, 1}},
    };
    std::mt19937_64 random(52);
    for (const std::vector<Coordinates>& points : cases) {
        SCOPED_TRACE(std::to_string(points.size()) + " points");
        ExpectTheBest(points, random);
    }
}

TEST(BestCircles, AreGlobalMinimaOfScatteredPoints) {
    struct {
        std::vector<Coordinates> points;
        double leastSum; ///< found by the Nelder-Mead method from 25 random starts
        const char* why;
    } const cases[] = {
        {{{1, 2, 0}, {3, -1, 2}, {2, 0, 1}, {1, 1, -1}}, 0.96643040, "the solver must pass a saddle point"},
        {{{3, 0, 0}, {-4, 1, -2}, {-4, -1, -2}, {-2, 0, -2}}, 1.93127158, "the solver must pass a saddle point"},
        {{{1, 2, 0}, {-4, 1, 0}, {1, 0, 0}, {-6, 1, 0}}, 1.88148641, "a saddle point in the plane of the points"},
        {{{-1, -1, -1}, {2, -2, 1}, {-6, 2, 0}, {1, -1, 2}, {-3, 1, 1}, {-5, 2, -2}},
         7.46614089,
         "its plane is far from the plane that fits best"},
        {{{-4, 0, -1}, {2, 2, 1}, {-1, -1, 2}, {-3, 2, 2}},
         5.93239136,
         "its plane is far from the plane that fits best"},
    };
    constexpr double lastDecimal = 1e-8;
    for (const auto& [points, leastSum, why] : cases)
        EXPECT_NEAR(SumOfSquares(points, Fitted(points)), leastSum, lastDecimal) << why;
}

TEST(BestCircles, AreBetterThanStraightLines) {
    const auto ofLine = [](const std::vector<Coordinates>& points) {
        CMaLine line;
        line.Fit(ArrayOf(points));
        double sum = 0.0;
        for (const Coordinates& p : points)
            sum += std::pow((line.GetDirection() * Difference(VectorOf(p), line.GetPoint().To3DVector())).Magnitude(),
                            2.0);
        return sum;
    };
    const std::vector<Coordinates> hardlyBent = {{0, -2, 0}, {-5, -2, 0}, {-6, 1, 0},
                                                 {-4, 2, 0}, {6, -1, 0},  {0, 2, 0}};
    EXPECT_LT(SumOfSquares(hardlyBent, Fitted(hardlyBent)), ofLine(hardlyBent));

    std::mt19937_64 random(18);
    std::normal_distribution<double> normal;
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE("seed 18, round " + std::to_string(round));
        std::vector<Coordinates> points;
        for (int i = 0; i < 4 + round % 4; ++i) {
            const double x = 3.0 * normal(random), y = normal(random), z = normal(random);
            points.push_back({x, y, z});
        }
        ASSERT_LT(SumOfSquares(points, Fitted(points)), ofLine(points));
    }
}
