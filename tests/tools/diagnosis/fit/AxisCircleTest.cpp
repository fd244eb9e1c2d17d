#include "tools/diagnosis/fit/AxisCircle.h"

#include "tools/model/Angles.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

const model::Vector3 centre{120.0, -45.0, 300.0};
const model::Vector3 along = model::Unit({1.0, 2.0, -0.5});
const model::Vector3 across = model::Unit(model::Cross({0.3, -1.0, 0.2}, along));
constexpr double radius = 180.0;

model::Vector3 PointAt(double polarAngle, double outward = 0.0, double up = 0.0) {
    const double angle = model::ToRadians(polarAngle);
    return centre + (radius + outward) * (std::cos(angle) * along + std::sin(angle) * across) +
           up * model::Cross(along, across);
}

/// Seven points evenly over an arc; over a whole turn the first is not taken twice.
std::vector<model::Vector3> Arc(double degrees) {
    const double spacing = degrees == 360.0 ? degrees / 7.0 : degrees / 6.0;
    std::vector<model::Vector3> points;
    for (int i = 0; i < 7; ++i) points.push_back(PointAt(spacing * i));
    return points;
}

/// Standard deviation of the centre in a direction of the circle's plane, for noise of standard deviation 1.
double CentreStandardDeviation(const diagnosis::fit::AxisCircle& circle, const model::Vector3& direction) {
    const double parts[] = {model::Dot(direction, circle.along), model::Dot(direction, circle.across)};
    double variance = 0.0;
    for (std::size_t i = 0; i < 2; ++i) {
        for (std::size_t j = 0; j < 2; ++j) variance += parts[i] * circle.covariance[i][j] * parts[j];
    }
    return std::sqrt(variance);
}

TEST(AxisCircle, KnowsItsCentreAsWellAsTheTableOfArcsSays) {
    // The table is in docs/conventions.md.
    const struct {
        double arc, alongBisector, tolerance;
    } cases[] = {{360, 0.53, 0.005}, {180, 0.99, 0.005}, {90, 3.4, 0.05},
                 {60, 7.3, 0.05},    {30, 29, 0.5},      {15, 115, 0.5}};
    for (const auto& each : cases) {
        const auto circle = diagnosis::fit::FitAxisCircle(Arc(each.arc));
        ASSERT_TRUE(circle.has_value());
        const model::Vector3 bisector = model::Unit(PointAt(each.arc / 2.0) - centre);
        EXPECT_NEAR(each.alongBisector, CentreStandardDeviation(*circle, bisector), each.tolerance) << each.arc;
    }
    // On a whole turn it is the same in every direction: the square root of 2/7.
    EXPECT_NEAR(std::sqrt(2.0 / 7.0), CentreStandardDeviation(*diagnosis::fit::FitAxisCircle(Arc(360)), along), 1e-9);
}

TEST(AxisCircle, KnowsThePlaneOfAWholeTurnAsWellAsTheFormulaSays) {
    // The variances for n points evenly over a whole turn: centre along the normal 1/n, each tilt of the normal
    // 2/(n r^2), radius 1/n.
    const auto circle = *diagnosis::fit::FitAxisCircle(Arc(360));
    constexpr double rounding = 1e-9;
    EXPECT_NEAR(1.0 / 7.0, circle.covariance[2][2], rounding);
    EXPECT_NEAR(2.0 / (7.0 * radius * radius), circle.covariance[3][3], rounding);
    EXPECT_NEAR(2.0 / (7.0 * radius * radius), circle.covariance[4][4], rounding);
    EXPECT_NEAR(1.0 / 7.0, circle.covariance[5][5], rounding) << "radius";
}

TEST(AxisCircle, GivesEachPointItsResidualsWithTheirSigns) {
    // The points lie alternately outside and inside, all round, so that the fitted circle is the one without errors.
    std::vector<model::Vector3> points;
    for (int i = 0; i < 8; ++i) points.push_back(PointAt(45.0 * i, i % 2 == 0 ? 0.01 : -0.01));
    const auto circle = diagnosis::fit::FitAxisCircle(points);
    ASSERT_TRUE(circle.has_value());
    constexpr double rounding = 1e-9;
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_NEAR(i % 2 == 0 ? 0.01 : -0.01, circle->points[i].radial, rounding) << i;
        EXPECT_NEAR(0.0, circle->points[i].outOfPlane, rounding) << i;
    }
    EXPECT_NEAR(0.01, circle->Rms(), rounding);
    EXPECT_EQ(10, circle->DegreesOfFreedom());

    for (std::size_t i = 0; i < 8; ++i)
        points[i] = PointAt(45.0 * static_cast<double>(i), 0.0, i % 2 == 0 ? 0.02 : -0.02);
    const auto wavy = *diagnosis::fit::FitAxisCircle(points);
    const double sense = model::Dot(wavy.normal, model::Cross(along, across));
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_NEAR(i % 2 == 0 ? 0.02 : -0.02, sense * wavy.points[i].outOfPlane, rounding) << i;
    }
}

TEST(AxisCircle, CoversAWholeTurnLessTheWidestGap) {
    EXPECT_NEAR(90.0, diagnosis::fit::FitAxisCircle(Arc(90))->arcCovered, 1e-9);
    EXPECT_NEAR(360.0 * 6.0 / 7.0, diagnosis::fit::FitAxisCircle(Arc(360))->arcCovered, 1e-9);
    EXPECT_DOUBLE_EQ(80.0, diagnosis::fit::ArcCovered({-30.0, 50.0, 10.0})) << "in any order";
    EXPECT_DOUBLE_EQ(20.0, diagnosis::fit::ArcCovered({170.0, -170.0})) << "across the half turn";
    EXPECT_DOUBLE_EQ(0.0, diagnosis::fit::ArcCovered({33.0}));
}

TEST(AxisCircle, IsMissingWhenThePointsDetermineNone) {
    EXPECT_FALSE(diagnosis::fit::FitAxisCircle(std::vector<model::Vector3>{}).has_value());
    EXPECT_FALSE(
        diagnosis::fit::FitAxisCircle(std::vector<model::Vector3>{centre, centre, centre, centre}).has_value());
    EXPECT_FALSE(diagnosis::fit::FitAxisCircle(std::vector<model::Vector3>{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {4, 4, 4}})
                     .has_value());
}

} // namespace
