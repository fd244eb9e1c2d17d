#include "tools/diagnosis/fit/Statistics.h"

#include <cmath>
#include <initializer_list>
#include <limits>

namespace qmv40::diagnosis::fit {

namespace {

double AwayFromZero(double value) {
    constexpr double tiny = 1e-300;
    return std::abs(value) < tiny ? tiny : value;
}

/// The continued fraction of the incomplete beta function, by Lentz's method. It converges quickly when x is below the
/// mean.
double ContinuedFraction(double a, double b, double x) {
    constexpr int limit = 10000;
    constexpr double precision = 1e-15;
    double c = 1.0;
    double d = 1.0 / AwayFromZero(1.0 - (a + b) * x / (a + 1.0));
    double fraction = d;
    for (int m = 1; m <= limit; ++m) {
        const double even = m * (b - m) * x / ((a + 2.0 * m - 1.0) * (a + 2.0 * m));
        const double odd = -(a + m) * (a + b + m) * x / ((a + 2.0 * m) * (a + 2.0 * m + 1.0));
        for (const double coefficient : {even, odd}) {
            d = 1.0 / AwayFromZero(1.0 + coefficient * d);
            c = AwayFromZero(1.0 + coefficient / c);
            fraction *= d * c;
        }
        if (std::abs(d * c - 1.0) < precision) break;
    }
    return fraction;
}

/// The regularised incomplete beta function of x. `rest` is 1 - x, as an argument of its own because 1 - x would lose
/// digits near x = 1.
double IncompleteBeta(double a, double b, double x, double rest) {
    if (x <= 0.0) return 0.0;
    if (rest <= 0.0) return 1.0;
    if (x > (a + 1.0) / (a + b + 2.0)) return 1.0 - IncompleteBeta(b, a, rest, x);
    const double logFactor =
        std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + a * std::log(x) + b * std::log(rest);
    return std::exp(logFactor) * ContinuedFraction(a, b, x) / a;
}

/// With so many degrees of freedom the quantiles of Student's distribution are the normal ones to six digits, also in
/// tails much smaller than those that are asked for.
constexpr double almostNormal = 1e7;

/// The number of standard deviations which chance reaches or exceeds, to either side, with this probability.
double StudentQuantile(double degreesOfFreedom, double probability) {
    double inside = 0.0, outside = 1.0;
    while (StudentTwoSided(outside, degreesOfFreedom) > probability) outside *= 2.0;
    constexpr int halvings = 60;
    for (int i = 0; i < halvings; ++i) {
        const double middle = 0.5 * (inside + outside);
        (StudentTwoSided(middle, degreesOfFreedom) > probability ? inside : outside) = middle;
    }
    return outside;
}

} // namespace

double FTestUpperTail(double ratio, double degreesOfNumerator, double degreesOfDenominator) {
    if (!(ratio > 0.0)) return 1.0;
    if (std::isinf(ratio)) return 0.0;
    const double weighted = degreesOfNumerator * ratio;
    const double sum = weighted + degreesOfDenominator;
    return IncompleteBeta(degreesOfDenominator / 2.0, degreesOfNumerator / 2.0, degreesOfDenominator / sum,
                          weighted / sum);
}

double StudentTwoSided(double standardDeviations, double degreesOfFreedom) {
    return FTestUpperTail(standardDeviations * standardDeviations, 1.0, degreesOfFreedom);
}

double StudentWidening(double degreesOfFreedom, double probability) {
    if (!(degreesOfFreedom > 0.0)) return std::numeric_limits<double>::infinity();
    return StudentQuantile(degreesOfFreedom, probability) / StudentQuantile(almostNormal, probability);
}

} // namespace qmv40::diagnosis::fit
