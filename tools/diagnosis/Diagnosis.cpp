#include "tools/diagnosis/Diagnosis.h"

#include "tools/diagnosis/CaptureEvaluation.h"
#include "tools/diagnosis/MistakeSearch.h"
#include "tools/diagnosis/Statistics.h"
#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::diagnosis {

namespace {

std::vector<model::Vector3> PositionsOf(std::span<const CapturedPoint> points) {
    std::vector<model::Vector3> positions;
    positions.reserve(points.size());
    for (const CapturedPoint& point : points) positions.push_back(point.position);
    return positions;
}

/// Variance of one circle, never below what rounding makes of it.
double VarianceOf(const AxisCircle& circle) {
    return std::max(circle.sumOfSquares / circle.Redundancy(), thresholds::leastVariance);
}

NoiseFigures NoiseOf(const AxisCircle& a, const AxisCircle& b) {
    const double ratio = VarianceOf(a) / VarianceOf(b);
    const double either = 2.0 * std::min(ChanceOfRatio(ratio, a.Redundancy(), b.Redundancy()),
                                         ChanceOfRatio(1.0 / ratio, b.Redundancy(), a.Redundancy()));
    const bool isUneven = either < thresholds::falseAlarmRate;
    const int redundancy = a.Redundancy() + b.Redundancy();
    const double together = std::sqrt((a.sumOfSquares + b.sumOfSquares) / redundancy);
    const auto own = [](const AxisCircle& circle) { return std::sqrt(circle.sumOfSquares / circle.Redundancy()); };
    return {isUneven ? PointNoise{own(a), own(b)} : PointNoise{together, together}, redundancy, isUneven};
}

/// Of the circle without one of its points: how often noise alone would make the others agree so much better.
double ChanceOfPoint(const AxisCircle& all, const AxisCircle& others) {
    const double gain = std::max(0.0, all.sumOfSquares - others.sumOfSquares) / 2.0;
    return ChanceOfRatio(gain / VarianceOf(others), 2.0, others.Redundancy());
}

/// Looks at one set with each of its points left out in turn.
class LeaveOneOut {
public:
    LeaveOneOut(const Diagnosis& theDiagnosis, const AxisCircle& theSet, std::vector<model::Vector3> thePositions)
        : diagnosis(theDiagnosis), set(theSet), positions(std::move(thePositions)) {}

    std::optional<Influence> Of(std::size_t index) const {
        std::vector<model::Vector3> others = positions;
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(index));
        const auto circle = FitAxisCircle(others);
        if (!circle || circle->Redundancy() < 1) return std::nullopt;
        const bool isA = &set == &diagnosis.aCircle;
        const AxisCircle& a = isA ? *circle : diagnosis.aCircle;
        const AxisCircle& b = isA ? diagnosis.bCircle : *circle;
        const model::Vector3 shift =
            NearestPointOfBAxis(a, b) - NearestPointOfBAxis(diagnosis.aCircle, diagnosis.bCircle);
        // An axis has no sense: half a turn is none.
        const double turn = std::remainder(BearingOfAAxis(a) - BearingOfAAxis(diagnosis.aCircle), 180.0);
        return Influence{model::SafeLength(shift), turn, ChanceOfPoint(set, *circle)};
    }

private:
    const Diagnosis& diagnosis;
    const AxisCircle& set;
    std::vector<model::Vector3> positions;
};

/// The head as fitted, without what was found to be wrong with single points or sets.
HeadModel HeadItself(HeadModel model) {
    std::erase_if(model.errors, [](const ModelError& error) { return !error.IsOfTheHead(); });
    return model;
}

std::vector<PointDiagnosis> PointsOf(const CapturedSets& sets, const Diagnosis& diagnosis) {
    const std::span all(sets.points);
    const LeaveOneOut fromA(diagnosis, diagnosis.aCircle, PositionsOf(all.first(sets.aCount)));
    const LeaveOneOut fromB(diagnosis, diagnosis.bCircle, PositionsOf(all.subspan(sets.aCount)));
    const HeadModel head = HeadItself(diagnosis.head.model);
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
    const HeadExplained explained = ExplainHead(sets);
    if (!std::isfinite(explained.fit.sumOfSquares)) return std::nullopt;

    const NoiseFigures noise = NoiseOf(*aCircle, *bCircle);
    const double difference = model::Wrapped(capture.rotation - explained.fit.MountingDegrees());
    Diagnosis diagnosis{*aCircle,      *bCircle,   noise, CompareAxes(*aCircle, *bCircle, noise.perSet),
                        explained.fit, difference, {},    {}};
    diagnosis.points = PointsOf(sets, diagnosis);
    diagnosis.findings = Judge(capture, explained.plain, diagnosis);
    return diagnosis;
}

} // namespace qmv40::diagnosis
