#include "tools/diagnosis/CaptureEvaluation.h"

#include "tools/diagnosis/QuadrantResolution.h"
#include "tools/diagnosis/Statistics.h"
#include "tools/diagnosis/SwappedAngles.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace qmv40::diagnosis {

namespace {

using Kind = FindingKind;

std::vector<std::size_t> PointsFrom(std::size_t first, std::size_t last) {
    std::vector<std::size_t> points(last - first);
    std::iota(points.begin(), points.end(), first);
    return points;
}

/// Looks at one capture from all sides and collects what there is to say.
class Judges {
public:
    Judges(const CaptureUnderTest& theCapture, const HeadFit& thePlain, const Diagnosis& theDiagnosis)
        : capture(theCapture), sets(theCapture.sets), plain(thePlain), diagnosis(theDiagnosis) {}

    std::vector<Finding> All() {
        JudgeWhole();
        NoteFewPoints();
        std::ranges::stable_sort(findings, std::ranges::greater(), &Finding::severity);
        return std::move(findings);
    }

private:
    void Add(Kind kind, Severity severity, double figure = 0.0, double reference = 0.0,
             std::vector<std::size_t> points = {}) {
        findings.push_back({kind, severity, std::move(points), figure, reference, std::nullopt});
    }
    bool HasFault() const { return std::ranges::find(findings, Severity::Fault, &Finding::severity) != findings.end(); }

    /// From what makes everything else meaningless to what is merely not as good as it should be.
    void JudgeWhole() {
        if (JudgeExchange()) return;
        JudgeMistakes();
        if (JudgeParallelAxes()) return;
        const bool onlyTurningAnglesAreWrong =
            std::ranges::all_of(findings, [](const Finding& each) { return each.kind == Kind::AngleMistyped; });
        if (!onlyTurningAnglesAreWrong && HasFault()) return;
        // Of angles that were merely turned to, the component knows nothing.
        JudgeAxes();
        if (HasFault() && !onlyTurningAnglesAreWrong) return;
        JudgeRotation();
        JudgePoints();
        JudgeCentre();
        if (diagnosis.noise.isUneven) JudgeNoise();
    }

    /// Two sets of one and the same axis, or a set of none. One mistake that explains it is the better finding.
    bool JudgeParallelAxes() {
        if (diagnosis.axes.angleBetween >= thresholds::nearlyParallel) return false;
        const bool isExplained = findings.size() == 1 && findings.front().severity == Severity::Fault &&
                                 findings.front().kind != Kind::PointsContradict;
        if (isExplained) return false;
        findings.clear();
        Add(Kind::AxesParallel, Severity::Fault, diagnosis.axes.angleBetween);
        return true;
    }

    /// The plain head fits when the angles are written otherwise.
    bool Fits(const CapturedSets& rewritten) const {
        const HeadFit fit = FitHead(rewritten.points);
        const double variance = std::max(fit.NoiseVariance(), thresholds::leastVariance);
        return std::sqrt(variance) < thresholds::noiseCeiling &&
               ChanceOfRatio(plain.NoiseVariance() / variance, plain.redundancy, fit.redundancy) <
                   thresholds::falseAlarmRate;
    }
    template <typename Rewrite> bool FitsWhen(Rewrite&& rewrite) const {
        CapturedSets other = sets;
        for (std::size_t i = 0; i < other.points.size(); ++i) rewrite(other.points[i], sets.IsOfASet(i));
        return Fits(other);
    }

    bool JudgeExchange() {
        if (std::sqrt(plain.NoiseVariance()) < thresholds::noiseCeiling) return false;
        if (FitsWhen([](CapturedPoint& point, bool) { std::swap(point.a, point.b); })) {
            Add(Kind::SetsExchanged, Severity::Fault);
        } else if (FitsWhen([](CapturedPoint& point, bool) { point.b = -point.b; })) {
            Add(Kind::SwivelReversed, Severity::Fault, 0.0);
        } else if (FitsWhen([](CapturedPoint& point, bool isA) { point.b = isA ? point.b : -point.b; })) {
            Add(Kind::SwivelReversed, Severity::Fault, 1.0);
        } else if (const SwappedAngles swap = BestSwapOfAngles(sets); Fits(swap.sets)) {
            Add(Kind::AnglesSwapped, Severity::Fault, 0.0, 0.0, {swap.first, swap.second});
        } else {
            return false;
        }
        return true;
    }

    void JudgeMistakes() {
        const HeadFit& fit = diagnosis.head;
        if (std::sqrt(fit.NoiseVariance()) > MisfitCeiling() || MistakesAreTooMany()) {
            return Add(Kind::PointsContradict, Severity::Fault, plain.Rms(), 0.0, FarthestOff());
        }
        for (const ModelError& error : fit.model.errors) JudgeMistake(error);
        if (HasFault()) return;
        if (std::sqrt(VarianceOnCircles()) > thresholds::noiseCeiling) {
            Add(Kind::PointsContradict, Severity::Fault, std::sqrt(VarianceOnCircles()), 0.0, FarthestOff());
        } else {
            JudgeExactness();
        }
    }

    /// With mistakes enough anything is explained: they are believed one for a whole run of points, or three in all.
    bool MistakesAreTooMany() const {
        int runs = 0, all = 0;
        for (const ModelError& error : diagnosis.head.model.errors) {
            if (error.IsOfTheHead() || DistanceBy(error) < thresholds::leastWrongPlace) continue;
            ++all;
            if (error.last - error.first > 1) ++runs;
        }
        return runs > 1 || all > 3;
    }

    /// What noise and notches together may do to a point at most.
    double MisfitCeiling() const {
        return thresholds::noiseCeiling +
               model::ToRadians(thresholds::notchCeiling) * model::SafeLength(diagnosis.head.model.tip);
    }

    /// As both circles show it, never below rounding.
    double VarianceOnCircles() const {
        const double sum = diagnosis.aCircle.sumOfSquares + diagnosis.bCircle.sumOfSquares;
        return std::max(sum / diagnosis.noise.redundancy, thresholds::leastVariance);
    }

    void JudgeMistake(const ModelError& error) {
        if (error.IsOfTheHead()) return; // judged by the axes
        const std::vector<std::size_t> points = PointsFrom(error.first, error.last);
        const double distance = DistanceBy(error);
        if (error.kind != ModelError::Kind::Place) return JudgeAngle(error, distance, points);
        const bool isWrong = distance >= thresholds::leastWrongPlace;
        const Severity severity = isWrong ? Severity::Fault : Severity::Warning;
        if (points.size() > 1) return Add(Kind::SetsApart, severity, distance, 0.0, points);
        Add(isWrong ? Kind::PointOff : Kind::PointSuspicious, severity, distance, 0.0, points);
    }

    void JudgeAngle(const ModelError& error, double distance, const std::vector<std::size_t>& points) {
        const Kind kind = KindOf(error);
        const double angle = model::Wrapped(model::ToDegrees(error.values[0]));
        const bool isWrongAngle = std::abs(angle) >= thresholds::leastWrongAngle;
        // What an axis that was to be held does by less than a notch spoils the circle; what one that was turned does
        // moves the points along it.
        const bool spoils = kind == Kind::OtherAxisMoved && distance >= thresholds::leastWrongPlace;
        const Severity severity = isWrongAngle || spoils ? Severity::Fault : Severity::Warning;
        if (isWrongAngle || points.size() > 1) return Add(kind, severity, angle, distance, points);
        Add(spoils ? Kind::PointOff : Kind::PointSuspicious, severity, distance, 0.0, points);
    }

    /// How far a error moves the points that it concerns, at most.
    double DistanceBy(const ModelError& error) const {
        HeadModel with = diagnosis.head.model;
        HeadModel without = with;
        with.errors = {error};
        without.errors.clear();
        double farthest = 0.0;
        for (std::size_t i = error.first; i < error.last; ++i) {
            const CapturedPoint& point = sets.points[i];
            farthest = std::max(farthest, model::SafeLength(with.Position(point, i) - without.Position(point, i)));
        }
        return farthest;
    }

    Kind KindOf(const ModelError& error) const {
        const bool isOfASet = sets.IsOfASet(error.first);
        const bool isTilt = error.kind == ModelError::Kind::TiltAngle;
        if (isOfASet == isTilt) return Kind::AngleMistyped;
        const std::size_t setSize = isOfASet ? sets.aCount : sets.points.size() - sets.aCount;
        return error.last - error.first == setSize ? Kind::SetAngleWrong : Kind::OtherAxisMoved;
    }

    /// The three points farthest off their places.
    std::vector<std::size_t> FarthestOff() const {
        std::vector<std::size_t> order = PointsFrom(0, diagnosis.points.size());
        std::ranges::stable_sort(order, std::ranges::greater(),
                                 [this](std::size_t i) { return diagnosis.points[i].offPlace; });
        constexpr std::size_t most = 3;
        order.resize(std::min(order.size(), most));
        return order;
    }

    /// The points leave the places that the angles give them by more than they leave their circles.
    void JudgeExactness() {
        const double onCircles = diagnosis.aCircle.sumOfSquares + diagnosis.bCircle.sumOfSquares;
        const int redundancy = diagnosis.noise.redundancy;
        const double variance = VarianceOnCircles();
        const int more = diagnosis.head.redundancy - redundancy;
        const double excess = (diagnosis.head.sumOfSquares - onCircles) / more;
        if (!(ChanceOfRatio(excess / variance, more, redundancy) < thresholds::falseAlarmRate)) return;
        Add(Kind::AnglesInexact, Severity::Warning, std::sqrt(excess), 0.0, FarthestOff());
    }

    /// Deviates from nought by more than its noise, and by so much that it matters.
    void JudgeAxis(Kind kind, double figure, double deviation, double worthAWarning, double beyondAnyHead) {
        const double share = deviation > 0.0 ? figure / deviation : std::numeric_limits<double>::infinity();
        if (!(ChanceOfDeviation(share, diagnosis.noise.redundancy) < thresholds::falseAlarmRate)) return;
        if (std::abs(figure) < worthAWarning) return;
        Add(kind, std::abs(figure) < beyondAnyHead ? Severity::Warning : Severity::Fault, std::abs(figure), deviation);
    }

    void JudgeAxes() {
        const HeadAxes& axes = diagnosis.axes;
        const double lean = std::hypot(axes.leanTowardsX.deviation, axes.leanTowardsY.deviation);
        JudgeAxis(Kind::HeadLeans, axes.Lean(), lean, thresholds::tiltWorthAWarning, thresholds::tiltBeyondAnyHead);
        JudgeAxis(Kind::AxesNotSquare, axes.outOfSquare.value, axes.outOfSquare.deviation,
                  thresholds::tiltWorthAWarning, thresholds::tiltBeyondAnyHead);
        JudgeAxis(Kind::AxesApart, axes.gap.value, axes.gap.deviation, thresholds::gapWorthAWarning,
                  thresholds::gapBeyondAnyHead);
    }

    void JudgeRotation() {
        const double difference = diagnosis.rotationDifference;
        if (!(std::abs(difference) >= thresholds::leastWrongRotation)) return;
        const double deviation = std::hypot(diagnosis.axes.rotationDeviation, diagnosis.head.MountingDeviation());
        const double share = deviation > 0.0 ? difference / deviation : std::numeric_limits<double>::infinity();
        if (!(ChanceOfDeviation(share, diagnosis.noise.redundancy) < thresholds::falseAlarmRate)) return;
        const Kind reason = ReasonForRotation();
        // Without a reason, a head or a capture that is not quite true may be behind a small difference.
        const bool isSlight = reason == Kind::RotationDisagrees && std::abs(difference) < thresholds::leastWrongAngle;
        Finding finding{reason,
                        isSlight ? Severity::Warning : Severity::Fault,
                        {},
                        capture.rotation,
                        diagnosis.head.MountingDegrees(),
                        std::nullopt};
        if (finding.kind != Kind::TiltReversed) {
            finding.captureAt = SwivelForASafeFold(diagnosis.head.model, Tilts());
        }
        findings.push_back(std::move(finding));
    }

    std::vector<double> Tilts() const {
        std::vector<double> tilts;
        tilts.reserve(sets.aCount);
        for (std::size_t i = 0; i < sets.aCount; ++i) tilts.push_back(sets.points[i].a);
        return tilts;
    }

    Kind ReasonForRotation() const {
        const HeadModel& head = diagnosis.head.model;
        const HeadModel straight = WithStraightStylus(head);
        const std::vector<double> tilts = Tilts();
        const double swivel = sets.points.front().b;
        const double folded = model::Wrapped(FoldedRotation(head, tilts, swivel) - capture.rotation);
        if (std::abs(folded) > std::abs(diagnosis.rotationDifference) / 2.0) return Kind::RotationDisagrees;
        // With a straight stylus, some B is right.
        if (!head.StylusHangs() || !SwivelForASafeFold(straight, tilts)) return Kind::TiltReversed;
        return FoldIsRight(straight, tilts, swivel) ? Kind::TipOffAxis : Kind::RotationOnWrongSide;
    }

    /// Points that leave the circle of the others, where nothing else is wrong with them.
    void JudgePoints() {
        const auto count = static_cast<double>(diagnosis.points.size());
        for (std::size_t i = 0; i < diagnosis.points.size(); ++i) {
            const auto& influence = diagnosis.points[i].influence;
            if (!influence || !(influence->chance * count < thresholds::falseAlarmRate)) continue;
            const auto isKnown = [i](const Finding& each) {
                return std::ranges::find(each.points, i) != each.points.end();
            };
            if (std::ranges::any_of(findings, isKnown)) continue;
            const CirclePoint& place = diagnosis.points[i].onCircle;
            Add(Kind::PointSuspicious, Severity::Warning, std::hypot(place.radial, place.outOfPlane), 0.0, {i});
        }
    }

    void JudgeCentre() {
        const auto atLeast = [](double noise) { return std::max(noise, thresholds::pointNoiseAtLeast); };
        const PointNoise noise{atLeast(diagnosis.noise.perSet.aSet), atLeast(diagnosis.noise.perSet.bSet)};
        const auto within = [this](const PointNoise& each) {
            return 2.0 * CompareAxes(diagnosis.aCircle, diagnosis.bCircle, each).CentreDeviation();
        };
        if (!(within(noise) > capture.centreWithin)) return;
        constexpr double ampleTilt = 80.0, ampleSwivel = 180.0;
        const bool isOfASet = within({noise.aSet, 0.0}) > within({0.0, noise.bSet});
        Kind kind = Kind::CentreUncertain;
        if (isOfASet && diagnosis.aCircle.arcCovered < ampleTilt) kind = Kind::TiltArcShort;
        if (!isOfASet && diagnosis.bCircle.arcCovered < ampleSwivel) kind = Kind::SwivelArcShort;
        Add(kind, Severity::Warning, within(noise), capture.centreWithin);
    }

    void JudgeNoise() {
        Add(Kind::NoiseUneven, Severity::Warning, diagnosis.noise.perSet.aSet, diagnosis.noise.perSet.bSet);
    }

    void NoteFewPoints() {
        const auto isUnknown = [](const PointDiagnosis& point) { return !point.influence; };
        for (const auto& [first, last] : {std::pair{std::size_t{0}, sets.aCount}, {sets.aCount, sets.points.size()}}) {
            const auto points = std::span(diagnosis.points).subspan(first, last - first);
            if (std::ranges::any_of(points, isUnknown)) {
                Add(Kind::FewPoints, Severity::Note, static_cast<double>(points.size()), 0.0, PointsFrom(first, last));
            }
        }
    }

    const CaptureUnderTest& capture;
    const CapturedSets& sets;
    const HeadFit& plain;
    const Diagnosis& diagnosis;
    std::vector<Finding> findings;
};

} // namespace

std::vector<Finding> Judge(const CaptureUnderTest& capture, const HeadFit& plain, const Diagnosis& diagnosis) {
    return Judges(capture, plain, diagnosis).All();
}

} // namespace qmv40::diagnosis
