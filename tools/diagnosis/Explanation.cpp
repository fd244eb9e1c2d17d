#include "tools/diagnosis/Explanation.h"

#include "tools/diagnosis/Thinning.h"
#include "tools/diagnosis/Thresholds.h"
#include "tools/diagnosis/fit/Statistics.h"

#include <algorithm>
#include <cmath>

namespace qmv40::diagnosis {

namespace {

/// The residuals of a fit, set by set: 0 is the A set, 1 the B set.
struct SetResiduals {
    SetResiduals(const captures::CapturedSets& sets, const fit::HeadFit& fit)
        : observations{3.0 * static_cast<double>(sets.aCount),
                       3.0 * static_cast<double>(sets.points.size() - sets.aCount)},
          // Each set determines about half of the unknowns.
          unknowns(0.5 * static_cast<double>(fit.model.Unknowns())) {
        for (std::size_t i = 0; i < sets.points.size(); ++i) {
            sums[sets.IsOfASet(i) ? 0 : 1] += model::Dot(fit.residuals[i], fit.residuals[i]);
        }
    }

    double DegreesOfFreedom(std::size_t set) const { return std::max(observations[set] - unknowns, 1.0); }
    double Variance(std::size_t set) const {
        return std::max(sums[set] / DegreesOfFreedom(set), thresholds::leastVariance);
    }

    /// Even, unless one set surely scatters more than the other. They stay even when it scatters more than a machine
    /// does.
    SetWeights Weights() const {
        const std::size_t noisier = Variance(0) > Variance(1) ? 0 : 1, quieter = 1 - noisier;
        const double ratio = Variance(noisier) / Variance(quieter);
        constexpr double ceiling = thresholds::unevenNoiseCeiling * thresholds::unevenNoiseCeiling;
        const double chance = 2.0 * fit::FTestUpperTail(ratio, DegreesOfFreedom(noisier), DegreesOfFreedom(quieter));
        if (Variance(noisier) > ceiling || chance > thresholds::falseAlarmRate) return {};
        return noisier == 0 ? SetWeights{1.0, ratio} : SetWeights{ratio, 1.0};
    }

    double observations[2]; // NOLINT(modernize-use-default-member-init): its values are arguments
    double unknowns;
    double sums[2]{};
};

captures::CapturedSets Weighted(captures::CapturedSets sets, const SetWeights& weights) {
    for (std::size_t i = 0; i < sets.points.size(); ++i) {
        sets.points[i].weight = sets.IsOfASet(i) ? weights.a : weights.b;
    }
    return sets;
}

/// The score of an explanation, the smaller the better: minus twice the logarithm of the likelihood of its residuals,
/// and a penalty for each error of the model and for a second size of noise.
double ScoreOf(const captures::CapturedSets& sets, const Explanation& explained) {
    const SetResiduals residuals(sets, explained.fit);
    const auto& [a, b] = residuals.sums;
    const auto& [ofA, ofB] = residuals.observations;
    const double all = ofA + ofB;
    // A few points may agree better by luck than any machine measures. Therefore some observations with the noise of a
    // usual machine are added.
    constexpr double usualVariance = 9e-6, usualObservations = 10.0;
    const auto unlikely = [](double sum, double observations) {
        return (observations + usualObservations) *
               std::log((sum + usualObservations * usualVariance) / (observations + usualObservations));
    };
    double score =
        explained.weights.AreEven() ? unlikely(a + b, all) : unlikely(a, ofA) + unlikely(b, ofB) + 2.0 * std::log(all);
    for (const fit::ModelError& error : explained.fit.model.errors) {
        const double places = error.IsOfTheHead(sets.points.size()) ? 1.0 : all;
        score += 2.0 * (static_cast<double>(error.Unknowns()) * std::log(all) + std::log(places));
    }
    return score;
}

/// The variance of one circle's noise, at least that of rounding.
double VarianceOf(const fit::AxisCircle& circle) {
    return std::max(circle.sumOfSquares / circle.DegreesOfFreedom(), thresholds::leastVariance);
}

bool IsUneven(const fit::AxisCircle& a, const fit::AxisCircle& b) {
    const double ratio = VarianceOf(a) / VarianceOf(b);
    const double either = 2.0 * std::min(fit::FTestUpperTail(ratio, a.DegreesOfFreedom(), b.DegreesOfFreedom()),
                                         fit::FTestUpperTail(1.0 / ratio, b.DegreesOfFreedom(), a.DegreesOfFreedom()));
    return either < thresholds::falseAlarmRate;
}

} // namespace

Explanation ExplainCapture(const captures::CapturedSets& sets, const model::Vector3& unlocking) {
    Explanation even{ExplainHead(sets, unlocking), {}};
    if (even.rewriting) return even;
    Explanation uneven = even;
    uneven.fit = even.plain;
    // The noise of a set is overestimated until a mistake in it is found, so it becomes known step by step. A rewritten
    // part of a large capture (Thinning.cpp) has no residuals of all points, and is not taken here.
    constexpr int mostTimes = 3;
    for (int i = 0; i < mostTimes && !uneven.rewriting; ++i) {
        const SetWeights used = uneven.weights, after = SetResiduals(sets, uneven.fit).Weights();
        constexpr double alike = 1.5;
        const auto isAlike = [](double one, double other) { return one < alike * other && other < alike * one; };
        if (isAlike(after.a, used.a) && isAlike(after.b, used.b)) break;
        uneven = {ExplainHead(Weighted(sets, after), unlocking), after};
    }
    if (uneven.weights.AreEven() || uneven.rewriting) return even;
    // Noise of two sizes is no mistake: a mistake must explain more than chance would.
    const double clearly = uneven.fit.model.errors.size() < even.fit.model.errors.size()
                               ? -2.0 * std::log(thresholds::falseAlarmRate)
                               : 0.0;
    return ScoreOf(sets, uneven) < ScoreOf(sets, even) + clearly ? uneven : even;
}

NoiseFigures NoiseOf(const captures::CapturedSets& sets, const fit::AxisCircle& a, const fit::AxisCircle& b,
                     const Explanation& explained) {
    const fit::HeadFit& head = explained.fit;
    const SetWeights& weights = explained.weights;
    const int degreesOfFreedom = a.DegreesOfFreedom() + b.DegreesOfFreedom();
    const double ofCircles = (weights.a * a.sumOfSquares + weights.b * b.sumOfSquares) / degreesOfFreedom;
    const bool anglesAreExact =
        fit::FTestUpperTail(head.NoiseVariance() / std::max(ofCircles, thresholds::leastVariance),
                            head.degreesOfFreedom, degreesOfFreedom) > thresholds::falseAlarmRate;
    const auto widening = [](double freedoms) { return fit::StudentWidening(freedoms, thresholds::falseAlarmRate); };
    // The head of a rewritten part (Thinning.cpp) has no residuals of all points.
    const bool hasResiduals = head.residuals.size() == sets.points.size();
    if (weights.AreEven() && hasResiduals && IsUneven(a, b)) {
        const SetResiduals residuals(sets, head);
        fit::PointNoise own, widened;
        const auto take = [&](const fit::AxisCircle& circle, std::size_t set, double& noise, double& wide) {
            const double ofCircle = std::sqrt(circle.sumOfSquares / circle.DegreesOfFreedom());
            noise = anglesAreExact ? std::max(ofCircle, std::sqrt(residuals.Variance(set))) : ofCircle;
            wide = noise * widening(anglesAreExact ? residuals.DegreesOfFreedom(set) : circle.DegreesOfFreedom());
        };
        take(a, 0, own.aSet, widened.aSet);
        take(b, 1, own.bSet, widened.bSet);
        return {own, widened, degreesOfFreedom, true, weights};
    }
    const double together = std::sqrt(anglesAreExact ? std::max(ofCircles, head.NoiseVariance()) : ofCircles);
    const double factor = widening(anglesAreExact ? head.degreesOfFreedom : degreesOfFreedom);
    const fit::PointNoise perSet{together / std::sqrt(weights.a), together / std::sqrt(weights.b)};
    return {perSet, {factor * perSet.aSet, factor * perSet.bSet}, degreesOfFreedom, !weights.AreEven(), weights};
}

} // namespace qmv40::diagnosis
