#include "tools/diagnosis/fit/NormalEquations.h"

#include <array>
#include <gtest/gtest.h>

using namespace qmv40;

namespace {

constexpr double rounding = 1e-12;

/// A straight line through four points, with its unknowns in any unit.
diagnosis::fit::NormalEquations Line(double unitOfSlope) {
    diagnosis::fit::NormalEquations equations(2);
    const double heights[] = {1.0, 3.0, 2.0, 6.0};
    for (int x = 0; x < 4; ++x) equations.Add(std::array{1.0, x * unitOfSlope}, heights[x]);
    return equations;
}

TEST(NormalEquations, GiveTheRegressionLineWorkedByHand) {
    // The means are x = 1.5 and y = 3. About them, the sum of the squares of x is 5, the sum of the products x y is 7:
    // the slope is 7/5, the height at x = 0 is 3 - 1.4 * 1.5.
    const auto solution = Line(1.0).Solve();
    ASSERT_TRUE(solution.has_value());
    EXPECT_NEAR(0.9, (*solution)[0], rounding);
    EXPECT_NEAR(1.4, (*solution)[1], rounding);
}

TEST(NormalEquations, GiveTheCovariancesOfTheRegressionLine) {
    // Variance of the slope 1/5; of the height at x = 0 1/4 + 1.5^2/5; their covariance -1.5/5.
    const auto covariance = Line(1.0).Covariance();
    ASSERT_TRUE(covariance.has_value());
    const double expected[2][2] = {{0.7, -0.3}, {-0.3, 0.2}};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(expected[i / 2][i % 2], (*covariance)[i / 2][i % 2], rounding) << i;
}

TEST(NormalEquations, DoNotDependOnUnits) {
    const double unit = 1e9;
    EXPECT_NEAR(1.4 / unit, (*Line(unit).Solve())[1], rounding / unit);
    EXPECT_NEAR(0.2 / (unit * unit), (*Line(unit).Covariance())[1][1], rounding / (unit * unit));
}

TEST(NormalEquations, AreNotSolvedWhenAnUnknownIsUndetermined) {
    diagnosis::fit::NormalEquations mixed(2);
    for (int i = 0; i < 5; ++i) mixed.Add(std::array{1.0, 2.0}, i);
    EXPECT_FALSE(mixed.Solve().has_value());
    EXPECT_FALSE(mixed.Covariance().has_value());
    EXPECT_TRUE(mixed.Solve(1e-6).has_value()) << "with damping there is a step";

    diagnosis::fit::NormalEquations unseen(2);
    unseen.Add(std::array{1.0, 0.0}, 1.0);
    EXPECT_FALSE(unseen.Solve().has_value());
}

TEST(NormalEquations, StepLessWhenTheyAreDamped) {
    const auto whole = *Line(1.0).Solve();
    const auto damped = *Line(1.0).Solve(1.0);
    EXPECT_LT(damped[0] * damped[0] + damped[1] * damped[1], whole[0] * whole[0] + whole[1] * whole[1]);
}

} // namespace
