#include "tools/diagnosis/fit/HeadAxes.h"

#include "tools/model/Angles.h"

#include <gtest/gtest.h>
#include <numbers>
#include <random>

using namespace qmv40;

namespace {

/// Points about an axis through `centre` along `axis`.
std::vector<model::Vector3> About(const model::Vector3& centre, const model::Vector3& axis, double radius,
                                  double firstAzimuth, double arc, int count) {
    const model::Vector3 direction = model::Unit(axis);
    const model::Vector3 u = model::Unit(model::Cross(direction, {0.1, 0.2, 1.0}));
    const model::Vector3 v = model::Cross(direction, u);
    std::vector<model::Vector3> points;
    for (int i = 0; i < count; ++i) {
        const double angle = model::ToRadians(firstAzimuth + arc * i / (count - 1));
        points.push_back(centre + radius * (std::cos(angle) * u + std::sin(angle) * v));
    }
    return points;
}

const model::Vector3 meeting{10.0, 20.0, 30.0};
constexpr double rounding = 1e-9;
constexpr diagnosis::fit::PointNoise none{};

diagnosis::fit::HeadAxes Compared(const std::vector<model::Vector3>& a, const std::vector<model::Vector3>& b,
                                  const diagnosis::fit::PointNoise& noise = none) {
    return diagnosis::fit::CompareAxes(*diagnosis::fit::FitAxisCircle(a), *diagnosis::fit::FitAxisCircle(b), noise);
}

TEST(HeadAxes, OfAnIdealHeadMeetAtARightAngleInItsCentre) {
    const diagnosis::fit::HeadAxes axes =
        Compared(About(meeting, {1, 0, 0}, 180, 0, 90, 7), About(meeting, {0, 0, 1}, 170, 0, 330, 12));
    EXPECT_NEAR(meeting.x, axes.headCentre[0].value, rounding);
    EXPECT_NEAR(meeting.y, axes.headCentre[1].value, rounding);
    EXPECT_NEAR(meeting.z, axes.headCentre[2].value, rounding);
    EXPECT_NEAR(0.0, axes.axisOffset.value, rounding);
    EXPECT_NEAR(0.0, axes.squareness.value, rounding);
    EXPECT_NEAR(0.0, axes.offVertical.value, rounding);
    EXPECT_NEAR(90.0, axes.angleBetween, rounding);
}

TEST(HeadAxes, ThatPassEachOtherHaveAnOffsetAndTheirCentreOnB) {
    const model::Vector3 aside = meeting + model::Vector3{0.0, 0.25, 0.0};
    const diagnosis::fit::HeadAxes axes =
        Compared(About(aside, {1, 0, 0}, 180, 0, 90, 7), About(meeting, {0, 0, 1}, 170, 0, 330, 12));
    EXPECT_NEAR(0.25, std::abs(axes.axisOffset.value), rounding);
    EXPECT_NEAR(meeting.y, axes.headCentre[1].value, rounding);
}

TEST(HeadAxes, ShowByHowMuchTheyAreOutOfSquareAndLean) {
    const double slant = std::tan(model::ToRadians(0.5));
    const double lean = std::tan(model::ToRadians(0.3));
    const diagnosis::fit::HeadAxes slanted =
        Compared(About(meeting, {1, 0, slant}, 180, 0, 90, 7), About(meeting, {0, 0, 1}, 170, 0, 330, 12));
    EXPECT_NEAR(0.5, std::abs(slanted.squareness.value), rounding);
    EXPECT_NEAR(89.5, slanted.angleBetween, rounding);
    const diagnosis::fit::HeadAxes leaning =
        Compared(About(meeting, {1, 0, 0}, 180, 0, 90, 7), About(meeting, {0, -lean, -1}, 170, 0, 330, 12));
    EXPECT_NEAR(0.0, leaning.offVerticalTowardsX.value, rounding);
    EXPECT_NEAR(0.3, leaning.offVerticalTowardsY.value, rounding) << "whichever way the normal points";
    EXPECT_NEAR(0.3, leaning.offVertical.value, rounding);
}

TEST(HeadAxes, ThatAreParallelEncloseNoAngle) {
    const diagnosis::fit::HeadAxes axes = Compared(
        About(meeting, {0, 0, 1}, 180, 0, 90, 7), About(meeting + model::Vector3{5, 0, 9}, {0, 0, 1}, 170, 0, 330, 12));
    EXPECT_NEAR(0.0, axes.angleBetween, 1e-6);
}

TEST(HeadAxes, ThatAreParallelHaveNoFiniteCentre) {
    diagnosis::fit::AxisCircle a = *diagnosis::fit::FitAxisCircle(About(meeting, {0, 0, 1}, 180, 0, 90, 7));
    a.normal = {0, 0, 1}; // exactly, without the rounding of the fit
    diagnosis::fit::AxisCircle b = a;
    b.centre.x += 5.0;
    for (const diagnosis::fit::Estimate& coordinate : diagnosis::fit::CompareAxes(a, b, none).headCentre) {
        EXPECT_FALSE(std::isfinite(coordinate.value));
    }
}

/// The root mean square of deviations from the expected value.
class Scatter {
public:
    void Take(double deviation) {
        sum += deviation * deviation;
        ++count;
    }
    double Deviation() const { return std::sqrt(sum / count); }

private:
    double sum = 0.0;
    int count = 0;
};

TEST(HeadAxes, ScatterAsPredictedWhenACaptureIsRepeated) {
    const struct {
        double tiltArc, swivelArc;
        diagnosis::fit::PointNoise noise;
        const char* why;
    } cases[] = {{90, 330, {1e-3, 1e-3}, "a good capture"},
                 {45, 330, {1e-3, 1e-3}, "a short tilt arc"},
                 {90, 135, {1e-3, 1e-3}, "a short swivel arc"},
                 {90, 330, {5e-3, 1e-3}, "an A set that scatters more"}};
    constexpr int repetitions = 1500;
    // The standard deviation of 1500 repetitions is itself uncertain by 2 %. The tolerance is four times that.
    constexpr double share = 0.08;
    for (const auto& each : cases) {
        SCOPED_TRACE(each.why);
        const auto a = About(meeting, {-1, 0.3, 0}, 180, 20, each.tiltArc, 7);
        const auto b = About(meeting, {0, 0, 1}, 170, 0, each.swivelArc, 9);
        const diagnosis::fit::HeadAxes predicted = Compared(a, b, each.noise);
        std::mt19937_64 generator(20240611);
        const auto noisy = [&generator](std::vector<model::Vector3> points, double noise) {
            std::normal_distribution<double> normal(0.0, noise);
            for (model::Vector3& p : points)
                p = p + model::Vector3{normal(generator), normal(generator), normal(generator)};
            return points;
        };
        Scatter centre[3], axisOffset, square, leanX, azimuth;
        for (int i = 0; i < repetitions; ++i) {
            const auto aCircle = *diagnosis::fit::FitAxisCircle(noisy(a, each.noise.aSet));
            const auto bCircle = *diagnosis::fit::FitAxisCircle(noisy(b, each.noise.bSet));
            const diagnosis::fit::HeadAxes axes = diagnosis::fit::CompareAxes(aCircle, bCircle, none);
            for (std::size_t k = 0; k < 3; ++k) {
                centre[k].Take(axes.headCentre[k].value - predicted.headCentre[k].value);
            }
            axisOffset.Take(axes.axisOffset.value);
            square.Take(axes.squareness.value);
            leanX.Take(axes.offVerticalTowardsX.value);
            const double truth = model::ToDegrees(std::atan2(0.3, -1.0));
            azimuth.Take(std::remainder(diagnosis::fit::AzimuthOfAAxis(aCircle) - truth, 180.0));
        }
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_NEAR(1.0, predicted.headCentre[k].standardDeviation / centre[k].Deviation(), share) << k;
        }
        EXPECT_NEAR(1.0, predicted.axisOffset.standardDeviation / axisOffset.Deviation(), share);
        EXPECT_NEAR(1.0, predicted.squareness.standardDeviation / square.Deviation(), share);
        EXPECT_NEAR(1.0, predicted.offVerticalTowardsX.standardDeviation / leanX.Deviation(), share);
        EXPECT_NEAR(1.0, predicted.rotationStandardDeviation / azimuth.Deviation(), share);
    }
}

} // namespace
