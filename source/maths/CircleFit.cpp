#include "maths/CircleFit.h"

#include "maths/CircleDescent.h"
#include "maths/CircleStarts.h"

#include <cmath>

// The sum over the points of (rho - r)^2 + h^2 is made as small as it gets, h being a point's distance from the
// circle's plane and rho its distance from the axis.

namespace {

double StraightRadius(const ScaledPoints& points) noexcept { return heightTimesRadius / (4.0 * points.GetRounding()); }

/// Whether the arc stands so clearly out of the noise that there is no doubt on which side of it the centre is.
bool IsClear(const FoundCircle& found, const ScaledPoints& points) noexcept {
    return found.NoiseInHeight(points) < 0.1;
}

/// From the plane that fits best. Nothing when that leads to no circle that is clear.
std::optional<FoundCircle> FitClearCircle(ScaledPoints& points, DescentLimits& limits) {
    const PrincipalAxes axes(points, PrincipalAxes::Digits::Half);
    if (axes.IsStraight()) return std::nullopt;
    const auto start = TaubinCircle(axes.axis[0], axes.axis[1], points, limits.straightRadius);
    const auto found = start ? Descend(points, *start, limits) : std::nullopt;
    return found && IsClear(*found, points) ? found : std::nullopt;
}

/// From every start that may lead to the best circle. Nothing when none fits better than a straight line.
std::optional<FoundCircle> FitUnclearCircle(ScaledPoints& points, DescentLimits& limits) {
    const PrincipalAxes axes(points);
    if (axes.IsStraight()) return std::nullopt;
    std::optional<FoundCircle> best;
    const auto descendFrom = [&](const std::optional<ApexCircle>& start) {
        if (!start) return;
        const std::optional<FoundCircle> found = Descend(points, *start, limits);
        if (found && (!best || found->value < best->value)) best = found;
    };
    // Across a direction in which the points lie far apart no circle can be.
    const int last = axes.spread[0] < 4.0 * axes.spread[1] ? 0 : 1;
    for (int normal = 2; normal >= last; --normal)
        descendFrom(
            TaubinCircle(axes.axis[(normal + 1) % 3], axes.axis[(normal + 2) % 3], points, limits.straightRadius));

    const double middle = axes.spread[1], least = axes.spread[2];
    const double ofLine = 0.5 * static_cast<double>(points.GetSize()) * (middle * middle + least * least);
    const auto beatsTheLine = [&] { return best && best->value < ofLine - RoundingOf(ofLine, points); };
    if (!beatsTheLine()) descendFrom(FlatArc(axes, points, limits.straightRadius));
    return beatsTheLine() ? best : std::nullopt;
}

/// So many points decide a circle so well that the whole of a larger set has little to add: some two passes.
constexpr std::size_t sampleSize = 8192;

/// From the circle through a sample. Nothing when that is no sure start.
std::optional<FoundCircle> FitFromASample(const CMaPointArray& all, const ScaledPoints& points, DescentLimits& limits) {
    CMaPointArray sample(sampleSize);
    for (std::size_t i = 0; i < sampleSize; ++i) sample.Add(all[static_cast<int>(i * points.GetSize() / sampleSize)]);
    ScaledPoints scaledSample(sample, points);
    const std::optional<FoundCircle> start = FitClearCircle(scaledSample, limits);
    if (!start) return std::nullopt;
    ApexCircle circle = start->circle;
    circle.apex = points.FromBaseOf(scaledSample, circle.apex);
    const std::optional<FoundCircle> found = Descend(points, circle, limits);
    return found && IsClear(*found, points) ? found : std::nullopt;
}

} // namespace

FittedCircle FitCircle(const CMaPointArray& points, long iterationLimit) {
    if (iterationLimit <= 0) throw GeometryError(GeometryError::Reason::LimitReached);
    ScaledPoints scaled(points);
    DescentLimits limits{StraightRadius(scaled), iterationLimit};
    std::optional<FoundCircle> found;
    if (scaled.GetSize() > 8 * sampleSize) found = FitFromASample(points, scaled, limits);
    if (!found) found = FitClearCircle(scaled, limits);
    if (!found) found = FitUnclearCircle(scaled, limits);
    if (!found) throw GeometryError(GeometryError::Reason::Impossible);
    const ApexCircle& circle = found->circle;
    const CMaPoint centre = scaled.ToCaller(circle.Centre());
    const double radius = scaled.ToCaller(circle.radius);
    const bool finite =
        std::isfinite(centre.x()) && std::isfinite(centre.y()) && std::isfinite(centre.z()) && std::isfinite(radius);
    if (!finite) throw GeometryError(GeometryError::Reason::Impossible);
    return {centre, circle.normal, radius};
}
