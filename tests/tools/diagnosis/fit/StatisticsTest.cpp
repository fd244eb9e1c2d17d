#include "tools/diagnosis/fit/Statistics.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

using namespace qmv40;

namespace {

TEST(FTestUpperTail, IsThatOfThePrintedTables) {
    const struct {
        double ratio, numerator, denominator, chance;
    } cases[] = {{161.448, 1, 1, 0.05}, {18.5128, 1, 2, 0.05}, {3.3258, 5, 10, 0.05},  {2.3479, 10, 20, 0.05},
                 {5.3903, 2, 30, 0.01}, {11.3919, 4, 5, 0.01}, {1.5343, 60, 60, 0.05}, {1.3519, 120, 120, 0.05}};
    // The tables round the ratio. With many degrees of freedom this changes the probability by up to 5e-4 of itself.
    constexpr double ofTables = 1e-4;
    for (const auto& each : cases) {
        EXPECT_NEAR(each.chance, diagnosis::fit::FTestUpperTail(each.ratio, each.numerator, each.denominator),
                    ofTables * each.chance * 5)
            << each.ratio << " with " << each.numerator << " and " << each.denominator;
    }
}

TEST(StudentTwoSided, IsThatOfThePrintedTables) {
    const struct {
        double standardDeviations, freedom, chance;
    } cases[] = {{12.7062, 1, 0.05}, {4.30265, 2, 0.05}, {2.22814, 10, 0.05}, {4.03214, 5, 0.01}, {2.66028, 60, 0.01}};
    constexpr double ofTables = 1e-4;
    for (const auto& each : cases) {
        EXPECT_NEAR(each.chance, diagnosis::fit::StudentTwoSided(each.standardDeviations, each.freedom),
                    ofTables * each.chance)
            << each.standardDeviations << " with " << each.freedom;
        EXPECT_EQ(diagnosis::fit::StudentTwoSided(each.standardDeviations, each.freedom),
                  diagnosis::fit::StudentTwoSided(-each.standardDeviations, each.freedom));
    }
}

TEST(FTestUpperTail, HasItsClosedFormsFarOutInTheTail) {
    constexpr double rounding = 1e-11;
    for (const double ratio : {1e-6, 0.3, 1.0, 7.0, 1e3, 1e6, 1e12}) {
        for (const double denominator : {1.0, 2.0, 5.0, 28.0, 300.0}) {
            const double expected = std::exp(-denominator / 2.0 * std::log1p(2.0 * ratio / denominator));
            EXPECT_NEAR(expected, diagnosis::fit::FTestUpperTail(ratio, 2.0, denominator), rounding * expected)
                << ratio << " with 2 and " << denominator;
        }
        const double expected = 2.0 / std::numbers::pi * std::atan(1.0 / std::sqrt(ratio));
        EXPECT_NEAR(expected, diagnosis::fit::FTestUpperTail(ratio, 1.0, 1.0), rounding * expected)
            << ratio << " with 1 and 1";
    }
}

TEST(FTestUpperTail, AndThatOfTheInverseRatioAddUpToOne) {
    constexpr double rounding = 1e-12;
    for (const double ratio : {0.01, 0.5, 1.0, 3.0, 40.0}) {
        EXPECT_NEAR(1.0,
                    diagnosis::fit::FTestUpperTail(ratio, 7.0, 12.0) +
                        diagnosis::fit::FTestUpperTail(1.0 / ratio, 12.0, 7.0),
                    rounding)
            << ratio;
    }
}

TEST(FTestUpperTail, IsDefinedForZeroNegativeAndNotANumber) {
    EXPECT_EQ(1.0, diagnosis::fit::FTestUpperTail(0.0, 3.0, 4.0));
    EXPECT_EQ(1.0, diagnosis::fit::FTestUpperTail(-1.0, 3.0, 4.0));
    EXPECT_EQ(1.0, diagnosis::fit::FTestUpperTail(std::numeric_limits<double>::quiet_NaN(), 3.0, 4.0));
    EXPECT_EQ(0.0, diagnosis::fit::FTestUpperTail(std::numeric_limits<double>::infinity(), 3.0, 4.0));
}

/// Student's table, both tails together 0.001; the normal distribution's quantile there is 3.2905.
TEST(Statistics, WidenAStandardDeviationAsStudentsTableSays) {
    const struct {
        double degreesOfFreedom, quantile;
    } cases[] = {{1, 636.619}, {2, 31.599}, {4, 8.610}, {10, 4.587}, {30, 3.646}, {120, 3.373}};
    // The table has three decimals, the normal quantile four.
    for (const auto& each : cases) {
        const double widening = diagnosis::fit::StudentWidening(each.degreesOfFreedom, 0.001);
        EXPECT_NEAR(each.quantile, 3.2905 * widening, 2e-4 * each.quantile) << each.degreesOfFreedom;
    }
    EXPECT_NEAR(1.0, diagnosis::fit::StudentWidening(1e6, 1e-4), 1e-4);
    EXPECT_TRUE(std::isinf(diagnosis::fit::StudentWidening(0.0, 1e-4)));
}

} // namespace
