#include "maths/fit/CircleFit.h"

#include "maths/fit/CircleSolver.h"
#include "maths/fit/InitialCircle.h"

#include <cmath>

namespace qmv40::fit {

namespace {

/// The radius at which the sagitta is four roundings of a coordinate.
double StraightRadius(const ScaledPoints& points) noexcept { return sagittaTimesRadius / (4.0 * points.GetRounding()); }

/// Whether the noise is below a tenth of the sagitta. Then the noise cannot hide on which side of the arc the
/// centre is, and the minimum near the initial guess is the lowest.
bool IsClear(const SolvedCircle& solved, const ScaledPoints& points) noexcept {
    return solved.NoiseOverSagitta(points) < 0.1;
}

/// Starts from the least-squares plane. Nothing when the result is not clear.
std::optional<SolvedCircle> FitClearCircle(ScaledPoints& points, SolverLimits& limits) {
    const PrincipalAxes axes(points, PrincipalAxes::Accuracy::Half);
    if (axes.IsStraight()) return std::nullopt;
    const auto guess = TaubinCircle(axes.axis[0], axes.axis[1], points, limits.straightRadius);
    const auto solved = guess ? Solve(points, *guess, limits) : std::nullopt;
    return solved && IsClear(*solved, points) ? solved : std::nullopt;
}

/// Tries several initial guesses, because the noise can hide the plane of the circle. Returns the best result.
/// Nothing when no circle fits better than the least-squares line.
std::optional<SolvedCircle> FitUnclearCircle(ScaledPoints& points, SolverLimits& limits) {
    const PrincipalAxes axes(points);
    if (axes.IsStraight()) return std::nullopt;
    std::optional<SolvedCircle> best;
    const auto solveFrom = [&](const std::optional<ApexCircle>& guess) {
        if (!guess) return;
        const std::optional<SolvedCircle> solved = Solve(points, *guess, limits);
        if (solved && (!best || solved->value < best->value)) best = solved;
    };
    // Each principal axis is tried as the normal, the one of least spread first. The normal cannot lie along the axis
    // of largest spread when that spread is much larger than the others.
    const int last = axes.spread[0] < 4.0 * axes.spread[1] ? 0 : 1;
    for (int normal = 2; normal >= last; --normal)
        solveFrom(
            TaubinCircle(axes.axis[(normal + 1) % 3], axes.axis[(normal + 2) % 3], points, limits.straightRadius));

    const double middle = axes.spread[1], least = axes.spread[2];
    const double ofLine = 0.5 * static_cast<double>(points.GetSize()) * (middle * middle + least * least);
    const auto beatsTheLine = [&] { return best && best->value < ofLine - RoundingOf(ofLine, points); };
    if (!beatsTheLine()) solveFrom(FlatArc(axes, points, limits.straightRadius));
    return beatsTheLine() ? best : std::nullopt;
}

/// The circle of 8192 points is a good initial guess for the circle of all points: the solver then needs about two
/// passes over all points.
constexpr std::size_t sampleSize = 8192;

/// Starts from the circle through a sample. Nothing when the result is not clear.
std::optional<SolvedCircle> FitFromASample(const CMaPointArray& all, const ScaledPoints& points, SolverLimits& limits) {
    CMaPointArray sample(sampleSize);
    for (std::size_t i = 0; i < sampleSize; ++i) sample.Add(all[static_cast<int>(i * points.GetSize() / sampleSize)]);
    ScaledPoints scaledSample(sample, points);
    const std::optional<SolvedCircle> ofSample = FitClearCircle(scaledSample, limits);
    if (!ofSample) return std::nullopt;
    ApexCircle guess = ofSample->circle;
    guess.apex = points.FromBaseOf(scaledSample, guess.apex);
    const std::optional<SolvedCircle> solved = Solve(points, guess, limits);
    return solved && IsClear(*solved, points) ? solved : std::nullopt;
}

} // namespace

FittedCircle FitCircle(const CMaPointArray& points, long evaluationLimit) {
    if (evaluationLimit <= 0) throw GeometryError(GeometryError::Reason::LimitReached);
    ScaledPoints scaled(points);
    SolverLimits limits{StraightRadius(scaled), evaluationLimit};
    std::optional<SolvedCircle> solved;
    // The fit to the sample takes 3 to 10 passes over it. For fewer points that would be too large a part of the work.
    if (scaled.GetSize() > 8 * sampleSize) solved = FitFromASample(points, scaled, limits);
    if (!solved) solved = FitClearCircle(scaled, limits);
    if (!solved) solved = FitUnclearCircle(scaled, limits);
    if (!solved) throw GeometryError(GeometryError::Reason::Impossible);
    const ApexCircle& circle = solved->circle;
    const CMaPoint centre = scaled.ToCaller(circle.Centre());
    const double radius = scaled.ToCaller(circle.radius);
    const bool isFinite =
        std::isfinite(centre.x()) && std::isfinite(centre.y()) && std::isfinite(centre.z()) && std::isfinite(radius);
    if (!isFinite) throw GeometryError(GeometryError::Reason::Impossible);
    return {centre, circle.normal, radius};
}

} // namespace qmv40::fit
