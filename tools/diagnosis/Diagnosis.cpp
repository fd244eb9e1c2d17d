#include "tools/diagnosis/Diagnosis.h"

#include "tools/diagnosis/CaptureEvaluation.h"
#include "tools/diagnosis/MistakeJudgement.h"
#include "tools/diagnosis/MistakeSearch.h"
#include "tools/diagnosis/SetJudgement.h"
#include "tools/diagnosis/fit/Statistics.h"
#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::diagnosis {

namespace {

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

/// The residuals of a fit, set by set.
struct PerSet {
    PerSet(const captures::CapturedSets& sets, const fit::HeadFit& fit)
        : observations{3.0 * static_cast<double>(sets.aCount),
                       3.0 * static_cast<double>(sets.points.size() - sets.aCount)},
          // Each set determines about half of the unknowns.
          unknowns(0.5 * static_cast<double>(fit.model.Unknowns())) {
        for (std::size_t i = 0; i < sets.points.size(); ++i) {
            sums[sets.IsOfASet(i) ? 0 : 1] += model::Dot(fit.residuals[i], fit.residuals[i]);
        }
    }

    double Freedoms(std::size_t set) const { return std::max(observations[set] - unknowns, 1.0); }
    double Variance(std::size_t set) const { return std::max(sums[set] / Freedoms(set), thresholds::leastVariance); }

    /// Even, unless one set surely scatters more than the other. They stay even when it scatters more than a machine
    /// does.
    SetWeights Weights() const {
        const std::size_t noisier = Variance(0) > Variance(1) ? 0 : 1, quieter = 1 - noisier;
        const double ratio = Variance(noisier) / Variance(quieter);
        constexpr double ceiling = thresholds::unevenNoiseCeiling * thresholds::unevenNoiseCeiling;
        const double chance = 2.0 * fit::FTestUpperTail(ratio, Freedoms(noisier), Freedoms(quieter));
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
/// and a penalty for each mistake and for a second size of noise.
double ScoreOf(const captures::CapturedSets& sets, const HeadExplained& explained, const SetWeights& weights) {
    const PerSet residuals(sets, explained.fit);
    const double all = residuals.observations[0] + residuals.observations[1];
    // A few points may agree better by luck than any machine measures. Therefore some observations with the noise of a
    // usual machine are added.
    constexpr double usualVariance = 9e-6, usualObservations = 10.0;
    const auto unlikely = [](double sum, double observations) {
        return (observations + usualObservations) *
               std::log((sum + usualObservations * usualVariance) / (observations + usualObservations));
    };
    double score = weights.AreEven() ? unlikely(residuals.sums[0] + residuals.sums[1], all)
                                     : unlikely(residuals.sums[0], residuals.observations[0]) +
                                           unlikely(residuals.sums[1], residuals.observations[1]) + 2.0 * std::log(all);
    for (const fit::ModelError& error : explained.fit.model.errors) {
        const double places = error.IsOfTheHead(sets.points.size()) ? 1.0 : all;
        score += 2.0 * (static_cast<double>(error.Unknowns()) * std::log(all) + std::log(places));
    }
    return score;
}

/// The search assumes that all points scatter alike. Where one set scatters more, it finds mistake after mistake in
/// that set; where a mistake was made in one set, that set scatters more until it is found. So both are tried, and the
/// one with the better score is taken.
struct Search {
    Search(const captures::CapturedSets& sets, const model::Vector3& unlocking)
        : explained(ExplainHead(sets, unlocking)) {
        if (explained.rewriting) return;
        HeadExplained uneven = explained;
        uneven.fit = explained.plain;
        SetWeights used;
        // The noise of a set is overestimated until a mistake in it is found, so it becomes known step by step.
        constexpr int mostTimes = 3;
        for (int i = 0; i < mostTimes; ++i) {
            const SetWeights after = PerSet(sets, uneven.fit).Weights();
            constexpr double alike = 1.5;
            const auto isAlike = [](double one, double other) { return one < alike * other && other < alike * one; };
            if (isAlike(after.a, used.a) && isAlike(after.b, used.b)) break;
            used = after;
            uneven = ExplainHead(Weighted(sets, used), unlocking);
        }
        if (used.AreEven() || uneven.rewriting) return;
        // Noise of two sizes is no mistake: a mistake must explain more than chance would.
        const double clearly = uneven.fit.model.errors.size() < explained.fit.model.errors.size()
                                   ? -2.0 * std::log(thresholds::falseAlarmRate)
                                   : 0.0;
        if (ScoreOf(sets, uneven, used) >= ScoreOf(sets, explained, {}) + clearly) return;
        explained = std::move(uneven);
        weights = used;
    }

    HeadExplained explained;
    SetWeights weights;
};

/// The noise is estimated from the circles and from the head that was fitted with the angles, which has more degrees of
/// freedom. The larger estimate counts. When the angles are inexact, so that the head has surely larger residuals
/// than the circles, only the circles count.
NoiseFigures NoiseOf(const captures::CapturedSets& sets, const fit::AxisCircle& a, const fit::AxisCircle& b,
                     const fit::HeadFit& head, const SetWeights& weights) {
    const int degreesOfFreedom = a.DegreesOfFreedom() + b.DegreesOfFreedom();
    const double ofCircles = (weights.a * a.sumOfSquares + weights.b * b.sumOfSquares) / degreesOfFreedom;
    const bool anglesAreExact =
        fit::FTestUpperTail(head.NoiseVariance() / std::max(ofCircles, thresholds::leastVariance),
                            head.degreesOfFreedom, degreesOfFreedom) > thresholds::falseAlarmRate;
    const auto widening = [](double freedoms) { return fit::StudentWidening(freedoms, thresholds::falseAlarmRate); };
    if (weights.AreEven() && IsUneven(a, b)) {
        const PerSet residuals(sets, head);
        fit::PointNoise own, widened;
        const auto take = [&](const fit::AxisCircle& circle, std::size_t set, double& noise, double& wide) {
            const double ofCircle = std::sqrt(circle.sumOfSquares / circle.DegreesOfFreedom());
            noise = anglesAreExact ? std::max(ofCircle, std::sqrt(residuals.Variance(set))) : ofCircle;
            wide = noise * widening(anglesAreExact ? residuals.Freedoms(set) : circle.DegreesOfFreedom());
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

/// The effect of leaving out a point of a set, to first order, from the covariances of the set's circle: the time for
/// each point is constant.
std::optional<Influence> InfluenceOf(const Diagnosis& diagnosis, bool isOfASet, std::size_t index) {
    const fit::AxisCircle &aCircle = diagnosis.aCircle, &bCircle = diagnosis.bCircle;
    const fit::AxisCircle& own = isOfASet ? aCircle : bCircle;
    const int left = own.DegreesOfFreedom() - 2;
    if (left < 1) return std::nullopt;
    const fit::CircleWithout without = fit::WithoutPoint(own, index);
    const fit::AxisCircle changed{without.centre, without.normal, {}, {}, 0.0, {}, 0.0, 0.0, {}};
    const fit::AxisCircle &a = isOfASet ? changed : aCircle, &b = isOfASet ? bCircle : changed;
    const model::Vector3 shift = fit::NearestPointOfBAxis(a, b) - fit::NearestPointOfBAxis(aCircle, bCircle);
    // An axis has no direction, so that half a turn is no turn.
    const double turn = std::remainder(fit::AzimuthOfAAxis(a) - fit::AzimuthOfAAxis(aCircle), 180.0);
    const double variance = std::max((own.sumOfSquares - without.gain) / left, thresholds::leastVariance);
    return Influence{model::SafeLength(shift), turn, fit::FTestUpperTail(without.gain / 2.0 / variance, 2.0, left)};
}

std::vector<PointDiagnosis> PointsOf(const captures::CapturedSets& sets, const Diagnosis& diagnosis) {
    const std::span all(sets.points);
    fit::HeadModel head = diagnosis.head.model;
    std::erase_if(head.errors, [&](const fit::ModelError& error) { return !error.IsOfTheHead(all.size()); });
    std::vector<PointDiagnosis> points;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool isA = sets.IsOfASet(i);
        const std::size_t inSet = isA ? i : i - sets.aCount;
        const fit::CirclePoint& onCircle = (isA ? diagnosis.aCircle : diagnosis.bCircle).points[inSet];
        const double offPlace = model::SafeLength(all[i].position - head.Position(all[i], i));
        points.push_back({onCircle, offPlace, InfluenceOf(diagnosis, isA, inSet)});
    }
    return points;
}

} // namespace

double Diagnosis::StandardDeviationByFit(double variance) const {
    return fit::StudentWidening(head.degreesOfFreedom, thresholds::falseAlarmRate) * head.StandardDeviation(variance);
}

double Diagnosis::MountingStandardDeviation() const {
    return model::ToDegrees(StandardDeviationByFit(head.mountingVariance));
}

std::optional<Diagnosis> Diagnose(const CaptureUnderTest& capture) {
    const captures::CapturedSets& sets = capture.sets;
    const std::vector<model::Vector3> positions = captures::PositionsOf(sets.points);
    const auto aCircle = fit::FitAxisCircle(std::span(positions).first(sets.aCount));
    const auto bCircle = fit::FitAxisCircle(std::span(positions).subspan(sets.aCount));
    if (!aCircle || !bCircle) return std::nullopt;
    Search search(sets, capture.unlocking);
    HeadExplained& explained = search.explained;
    if (!std::isfinite(explained.fit.sumOfSquares)) return std::nullopt;

    const NoiseFigures noise = NoiseOf(sets, *aCircle, *bCircle, explained.fit, search.weights);
    const double difference = model::Wrapped(capture.rotation - explained.fit.MountingDegrees());
    Diagnosis diagnosis{*aCircle,
                        *bCircle,
                        noise,
                        fit::CompareAxes(*aCircle, *bCircle, noise.widened),
                        explained.fit,
                        explained.rewriting,
                        difference,
                        {},
                        {}};
    diagnosis.points = PointsOf(sets, diagnosis);
    diagnosis.findings = Judge(capture, explained.plain, diagnosis);
    return diagnosis;
}

Judgement JudgeCapture(const CaptureUnderTest& capture) {
    Judgement judgement{JudgeSets(capture.sets), std::nullopt};
    if (!judgement.findings.empty()) return judgement;
    judgement.diagnosis = Diagnose(capture);
    if (judgement.diagnosis) {
        judgement.findings = judgement.diagnosis->findings;
    } else {
        judgement.findings = {{FindingKind::NumbersTooLarge, Severity::Fault, {}}};
    }
    return judgement;
}

} // namespace qmv40::diagnosis
