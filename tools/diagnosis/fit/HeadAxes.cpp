#include "tools/diagnosis/fit/HeadAxes.h"

#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::diagnosis::fit {

namespace {

struct Axis {
    model::Vector3 point;
    model::Vector3 direction; ///< of unit length
};

enum Figure { CentreX, CentreY, CentreZ, AxisOffset, Squareness, LeanX, LeanY, AzimuthOfA, figureCount };
using Figures = std::array<double, figureCount>;

/// The unknowns of an axis: its point along the circle's three directions, its direction towards two of them.
constexpr std::size_t freedoms = 5;

Axis Moved(const AxisCircle& circle, std::size_t freedom, double step) {
    const model::Vector3 directions[] = {circle.along, circle.across, circle.normal, circle.along, circle.across};
    const model::Vector3 change = step * directions[freedom];
    if (freedom < 3) return {circle.centre + change, circle.normal};
    return {circle.centre, model::SafeUnit(circle.normal + change)};
}

model::Vector3 NearestPoint(const Axis& a, const Axis& b) {
    const model::Vector3 across = model::Cross(b.direction, a.direction);
    const model::Vector3 between = model::Cross(b.point - a.point, a.direction);
    return b.point - (model::Dot(between, across) / model::Dot(across, across)) * b.direction;
}

Figures FiguresOf(const Axis& a, const Axis& b) {
    const model::Vector3 centre = NearestPoint(a, b);
    const model::Vector3 common = model::SafeUnit(model::Cross(a.direction, b.direction));
    const model::Vector3 up = b.direction.z < 0.0 ? -b.direction : b.direction;
    return {centre.x,
            centre.y,
            centre.z,
            model::Dot(b.point - a.point, common),
            model::ToDegrees(std::asin(std::clamp(model::Dot(a.direction, b.direction), -1.0, 1.0))),
            model::ToDegrees(std::atan2(up.x, up.z)),
            model::ToDegrees(std::atan2(up.y, up.z)),
            model::ToDegrees(std::atan2(a.direction.y, a.direction.x))};
}

Figures Slope(const Figures& after, const Figures& before, double step) {
    Figures slope;
    for (std::size_t i = 0; i < figureCount; ++i) slope[i] = (after[i] - before[i]) / (2.0 * step);
    slope[AzimuthOfA] = model::Wrapped(after[AzimuthOfA] - before[AzimuthOfA]) / (2.0 * step);
    return slope;
}

/// The variances of the figures when the noise of one circle has the variance 1. `figuresOf` returns the figures for a
/// changed axis.
template <typename FiguresOfMoved> Figures Variances(const AxisCircle& circle, const FiguresOfMoved& figuresOf) {
    // Central differences of smooth functions are exact to about nine digits.
    constexpr double turn = 1e-5;
    std::array<Figures, freedoms> slopes;
    for (std::size_t i = 0; i < freedoms; ++i) {
        const double step = i < 3 ? turn * circle.radius : turn;
        slopes[i] = Slope(figuresOf(Moved(circle, i, step)), figuresOf(Moved(circle, i, -step)), step);
    }
    Figures variances{};
    for (std::size_t i = 0; i < freedoms; ++i) {
        for (std::size_t j = 0; j < freedoms; ++j) {
            for (std::size_t k = 0; k < figureCount; ++k) {
                variances[k] += slopes[i][k] * circle.covariance[i][j] * slopes[j][k];
            }
        }
    }
    return variances;
}

} // namespace

double HeadAxes::CentreStandardDeviation() const {
    return std::hypot(headCentre[0].standardDeviation, headCentre[1].standardDeviation,
                      headCentre[2].standardDeviation);
}

HeadAxes CompareAxes(const AxisCircle& a, const AxisCircle& b, const PointNoise& noise) {
    const Axis aAxis{a.centre, a.normal};
    const Axis bAxis{b.centre, b.normal};
    const Figures value = FiguresOf(aAxis, bAxis);
    const Figures fromA = Variances(a, [&](const Axis& moved) { return FiguresOf(moved, bAxis); });
    const Figures fromB = Variances(b, [&](const Axis& moved) { return FiguresOf(aAxis, moved); });
    const auto estimate = [&](Figure figure) {
        const double variance = noise.aSet * noise.aSet * fromA[figure] + noise.bSet * noise.bSet * fromB[figure];
        return Estimate{value[figure], std::sqrt(variance)};
    };
    const double between =
        std::atan2(model::SafeLength(model::Cross(a.normal, b.normal)), std::abs(model::Dot(a.normal, b.normal)));
    const Estimate leanX = estimate(LeanX), leanY = estimate(LeanY);
    const double offVertical = std::atan2(std::hypot(b.normal.x, b.normal.y), std::abs(b.normal.z));
    return {{estimate(CentreX), estimate(CentreY), estimate(CentreZ)},
            estimate(AxisOffset),
            estimate(Squareness),
            leanX,
            leanY,
            {model::ToDegrees(offVertical), std::hypot(leanX.standardDeviation, leanY.standardDeviation)},
            estimate(AzimuthOfA).standardDeviation,
            model::ToDegrees(between)};
}

model::Vector3 NearestPointOfBAxis(const AxisCircle& a, const AxisCircle& b) {
    return NearestPoint({a.centre, a.normal}, {b.centre, b.normal});
}

double AzimuthOfAAxis(const AxisCircle& a) { return model::ToDegrees(std::atan2(a.normal.y, a.normal.x)); }

} // namespace qmv40::diagnosis::fit
