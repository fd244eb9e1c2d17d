#include "tools/diagnosis/Diagnosis.h"

#include "tools/diagnosis/CaptureEvaluation.h"
#include "tools/diagnosis/MistakeJudgement.h"
#include "tools/diagnosis/MistakeSearch.h"
#include "tools/diagnosis/Statistics.h"
#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::diagnosis {

namespace {

/// The variance of one circle's noise, at least that of rounding.
double VarianceOf(const AxisCircle& circle) {
    return std::max(circle.sumOfSquares / circle.DegreesOfFreedom(), thresholds::leastVariance);
}

bool IsUneven(const AxisCircle& a, const AxisCircle& b) {
    const double ratio = VarianceOf(a) / VarianceOf(b);
    const double either = 2.0 * std::min(FTestUpperTail(ratio, a.DegreesOfFreedom(), b.DegreesOfFreedom()),
                                         FTestUpperTail(1.0 / ratio, b.DegreesOfFreedom(), a.DegreesOfFreedom()));
    return either < thresholds::falseAlarmRate;
}

/// The search assumes equal noise of all points. When one set has more noise, it finds many mistakes in that set,
/// although the head without mistakes fits all points as well as the noisier set fits its circle.
bool IsUnevenNoiseAlone(const CapturedSets& sets, const HeadExplained& explained, const AxisCircle& a,
                        const AxisCircle& b) {
    const double noisier = std::max(VarianceOf(a), VarianceOf(b));
    return explained.rewriting.kind == Rewriting::Kind::None && MistakesAreTooMany(sets, explained.fit.model) &&
           IsUneven(a, b) && std::sqrt(noisier) < thresholds::unevenNoiseCeiling &&
           explained.plain.NoiseVariance() <= noisier;
}

/// The fit of the whole head has far more degrees of freedom than the circles have. Its noise is used when the circles
/// have few, unless the points are farther from their places than from their circles.
NoiseFigures NoiseOf(const AxisCircle& a, const AxisCircle& b, const HeadFit& head) {
    const bool isUneven = IsUneven(a, b);
    const int degreesOfFreedom = a.DegreesOfFreedom() + b.DegreesOfFreedom();
    const double ofCircles = (a.sumOfSquares + b.sumOfSquares) / degreesOfFreedom;
    const bool isOne = FTestUpperTail(head.NoiseVariance() / std::max(ofCircles, thresholds::leastVariance),
                                      head.degreesOfFreedom, degreesOfFreedom) > thresholds::falseAlarmRate;
    // With few degrees of freedom, the circles may fit well by chance.
    constexpr int few = 10;
    const double together =
        std::sqrt(isOne && degreesOfFreedom < few ? std::max(ofCircles, head.NoiseVariance()) : ofCircles);
    const auto own = [](const AxisCircle& circle) {
        return std::sqrt(circle.sumOfSquares / circle.DegreesOfFreedom());
    };
    return {isUneven ? PointNoise{own(a), own(b)} : PointNoise{together, together}, degreesOfFreedom, isUneven};
}

/// The effect of leaving out each point of a set in turn. It is computed to first order from the covariances of the
/// set's circle, so that the time for each point is constant.
class LeaveOneOut {
public:
    LeaveOneOut(const Diagnosis& theDiagnosis, bool isOfASet)
        : diagnosis(theDiagnosis), isA(isOfASet), set(isOfASet ? diagnosis.aCircle : diagnosis.bCircle),
          centre(NearestPointOfBAxis(diagnosis.aCircle, diagnosis.bCircle)) {}

    std::optional<Influence> Of(std::size_t index) const {
        const int left = set.DegreesOfFreedom() - 2;
        if (left < 1) return std::nullopt;
        const CircleWithout without = WithoutPoint(set, index);
        const AxisCircle changed{without.centre, without.normal, {}, {}, 0.0, {}, 0.0, 0.0, {}};
        const AxisCircle& a = isA ? changed : diagnosis.aCircle;
        const AxisCircle& b = isA ? diagnosis.bCircle : changed;
        // An axis has no direction, so that half a turn is no turn.
        const double turn = std::remainder(AzimuthOfAAxis(a) - AzimuthOfAAxis(diagnosis.aCircle), 180.0);
        const double variance = std::max((set.sumOfSquares - without.gain) / left, thresholds::leastVariance);
        return Influence{model::SafeLength(NearestPointOfBAxis(a, b) - centre), turn,
                         FTestUpperTail(without.gain / 2.0 / variance, 2.0, left)};
    }

private:
    const Diagnosis& diagnosis;
    bool isA;
    const AxisCircle& set;
    model::Vector3 centre;
};

/// The fitted head without the errors of single points or sets.
HeadModel HeadItself(HeadModel model, std::size_t points) {
    std::erase_if(model.errors, [points](const ModelError& error) { return !error.IsOfTheHead(points); });
    return model;
}

std::vector<PointDiagnosis> PointsOf(const CapturedSets& sets, const Diagnosis& diagnosis) {
    const std::span all(sets.points);
    const LeaveOneOut fromA(diagnosis, true), fromB(diagnosis, false);
    const HeadModel head = HeadItself(diagnosis.head.model, all.size());
    std::vector<PointDiagnosis> points;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool isA = sets.IsOfASet(i);
        const std::size_t inSet = isA ? i : i - sets.aCount;
        const CirclePoint& onCircle = (isA ? diagnosis.aCircle : diagnosis.bCircle).points[inSet];
        const double offPlace = model::SafeLength(all[i].position - head.Position(all[i], i));
        points.push_back({onCircle, offPlace, (isA ? fromA : fromB).Of(inSet)});
    }
    return points;
}

} // namespace

bool Diagnosis::Has(Severity severity) const {
    return std::ranges::any_of(findings, [severity](const Finding& finding) { return finding.severity == severity; });
}

std::optional<Diagnosis> Diagnose(const CaptureUnderTest& capture) {
    const CapturedSets& sets = capture.sets;
    const std::vector<model::Vector3> positions = PositionsOf(sets.points);
    const auto aCircle = FitAxisCircle(std::span(positions).first(sets.aCount));
    const auto bCircle = FitAxisCircle(std::span(positions).subspan(sets.aCount));
    if (!aCircle || !bCircle) return std::nullopt;
    HeadExplained explained = ExplainHead(sets, capture.unlocking);
    if (!std::isfinite(explained.fit.sumOfSquares)) return std::nullopt;
    if (IsUnevenNoiseAlone(sets, explained, *aCircle, *bCircle)) explained.fit = explained.plain;

    const NoiseFigures noise = NoiseOf(*aCircle, *bCircle, explained.fit);
    const double difference = model::Wrapped(capture.rotation - explained.fit.MountingDegrees());
    Diagnosis diagnosis{
        *aCircle,   *bCircle, noise, CompareAxes(*aCircle, *bCircle, noise.perSet), explained.fit, explained.rewriting,
        difference, {},       {}};
    diagnosis.points = PointsOf(sets, diagnosis);
    diagnosis.findings = Judge(capture, explained.plain, diagnosis);
    return diagnosis;
}

} // namespace qmv40::diagnosis
