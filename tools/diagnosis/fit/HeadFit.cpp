#include "tools/diagnosis/fit/HeadFit.h"

#include "tools/diagnosis/fit/HeadSums.h"
#include "tools/diagnosis/fit/NormalEquations.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <limits>

namespace qmv40::diagnosis::fit {

namespace {

std::vector<model::Vector3> ResidualsOf(std::span<const captures::CapturedPoint> points, const HeadModel& model) {
    std::vector<model::Vector3> residuals;
    residuals.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        residuals.push_back(points[i].position - model.Position(points[i], i));
    }
    return residuals;
}

double SumOfSquares(std::span<const captures::CapturedPoint> points, std::span<const model::Vector3> residuals) {
    double sum = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) sum += points[i].weight * model::Dot(residuals[i], residuals[i]);
    return sum;
}

NormalEquations EquationsOf(std::span<const captures::CapturedPoint> points, const HeadModel& model,
                            std::span<const model::Vector3> residuals) {
    const std::size_t unknowns = model.Unknowns();
    NormalEquations equations(unknowns);
    std::vector<model::Vector3> derivatives(unknowns);
    std::vector<double> row(unknowns);
    for (std::size_t i = 0; i < points.size(); ++i) {
        model.Derivatives(points[i], i, derivatives);
        for (const auto component : {&model::Vector3::x, &model::Vector3::y, &model::Vector3::z}) {
            std::ranges::transform(derivatives, row.begin(), [&](const model::Vector3& d) { return d.*component; });
            equations.Add(row, residuals[i].*component, points[i].weight);
        }
    }
    return equations;
}

enum class Outcome { Worse, Better, AtRest };

/// Takes the step of the normal equations when it makes the sum of squares smaller.
Outcome TakeStep(std::span<const captures::CapturedPoint> points, const NormalEquations& equations, double damping,
                 HeadFit& fit) {
    const auto step = equations.Solve(damping);
    if (!step) return Outcome::Worse;
    HeadModel model = fit.model.Stepped(*step);
    std::vector<model::Vector3> residuals = ResidualsOf(points, model);
    const double sum = SumOfSquares(points, residuals);
    if (!(sum < fit.sumOfSquares)) return Outcome::Worse;
    // An improvement within rounding is taken, and ends the search.
    constexpr double rounding = 1e-12;
    const bool isAtRest = fit.sumOfSquares - sum <= rounding * fit.sumOfSquares;
    fit.model = std::move(model);
    fit.residuals = std::move(residuals);
    fit.sumOfSquares = sum;
    return isAtRest ? Outcome::AtRest : Outcome::Better;
}

/// Finds one better model, and raises the damping each time a step is not better. True when a further improvement is
/// possible.
bool Improve(std::span<const captures::CapturedPoint> points, HeadFit& fit, double& damping) {
    constexpr int mostTries = 15;
    constexpr double leastDamping = 1e-12;
    const NormalEquations equations = EquationsOf(points, fit.model, fit.residuals);
    for (int i = 0; i < mostTries; ++i) {
        const Outcome outcome = TakeStep(points, equations, damping, fit);
        damping = outcome == Outcome::Worse ? damping * 10.0 : std::max(damping / 100.0, leastDamping);
        if (outcome != Outcome::Worse) return outcome == Outcome::Better;
    }
    return false;
}

} // namespace

double HeadFit::Rms() const {
    double sum = 0.0;
    for (const model::Vector3& residual : residuals) sum += model::Dot(residual, residual);
    return std::sqrt(sum / static_cast<double>(residuals.size()));
}

double HeadFit::MountingDegrees() const { return model::Wrapped(model::ToDegrees(model.mounting)); }

double HeadFit::StandardDeviation(double variance) const { return std::sqrt(variance * NoiseVariance()); }

HeadFit FitHead(std::span<const captures::CapturedPoint> points, const HeadModel& start, int mostSteps) {
    HeadFit fit;
    fit.model = start;
    fit.residuals = ResidualsOf(points, start);
    fit.sumOfSquares = SumOfSquares(points, fit.residuals);
    fit.degreesOfFreedom = 3 * static_cast<int>(points.size()) - static_cast<int>(start.Unknowns());
    double damping = 1e-9;
    for (int i = 0; i < mostSteps && Improve(points, fit, damping); ++i) {
    }
    return fit;
}

void FindVariances(std::span<const captures::CapturedPoint> points, HeadFit& fit) {
    const auto covariance = EquationsOf(points, fit.model, fit.residuals).Covariance();
    const auto variance = [&](std::size_t unknown) {
        return covariance ? (*covariance)[unknown][unknown] : std::numeric_limits<double>::infinity();
    };
    fit.poleSphereVariance = {variance(0), variance(1), variance(2)};
    fit.mountingVariance = variance(3);
    fit.tipVariance = variance(4) + variance(5) + variance(6);
}

HeadFit FitHead(std::span<const captures::CapturedPoint> points) {
    HeadSums sums;
    for (const captures::CapturedPoint& point : points) sums += HeadSums(point, 0.0, 0.0);
    return FitHead(points, BestHead({&sums, 1}).model);
}

} // namespace qmv40::diagnosis::fit
