#include "tools/diagnosis/CaptureEvaluation.h"

#include "tools/diagnosis/MistakeJudgement.h"
#include "tools/diagnosis/fit/QuadrantResolution.h"
#include "tools/diagnosis/fit/Statistics.h"
#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::diagnosis {

namespace {

using Kind = FindingKind;
using model::Vector3;

/// Evaluates one capture and collects the findings.
class Evaluation {
public:
    Evaluation(const CaptureUnderTest& theCapture, const fit::HeadFit& thePlain, const Diagnosis& theDiagnosis)
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
        findings.push_back({kind, severity, std::move(points), figure, reference});
    }
    bool HasFault() const { return Has(findings, Severity::Fault); }

    /// Judges first what makes all other findings meaningless, and last the quality of a capture without mistakes.
    void JudgeWhole() {
        if (diagnosis.rewriting) {
            findings.push_back(JudgeRewriting(*diagnosis.rewriting, sets, diagnosis.head.model));
            return;
        }
        if (JudgeStylus()) return;
        JudgeMistakes();
        if (JudgeParallelAxes()) return;
        const bool onlyTurningAnglesAreWrong =
            std::ranges::all_of(findings, [](const Finding& each) { return each.kind == Kind::AngleMistyped; });
        if (!onlyTurningAnglesAreWrong && HasFault()) return;
        // The component ignores the turning angle, so that its result can still be judged.
        JudgeAxes();
        if (HasFault() && !onlyTurningAnglesAreWrong) return;
        JudgeRotation();
        JudgePoints();
        if (!HasFault()) JudgeCentre();
        if (!HasFault()) JudgeKnown();
        JudgePrecision();
        JudgePrecisionOfRotation();
        const NoiseFigures& noise = diagnosis.noise;
        if (noise.isUneven) Add(Kind::NoiseUneven, Severity::Warning, noise.perSet.aSet, noise.perSet.bSet);
    }

    /// Both sets were captured about the same axis, or a set about none. A single mistake that explains it is reported
    /// instead.
    bool JudgeParallelAxes() {
        if (diagnosis.axes.angleBetween >= thresholds::nearlyParallel) return false;
        const auto isSmallMistake = [](Kind kind) {
            return kind == Kind::AngleMistyped || kind == Kind::OtherAxisMoved || kind == Kind::PointOff;
        };
        const bool isExplained = findings.size() == 1 && isSmallMistake(findings.front().kind);
        if (isExplained) return false;
        findings.clear();
        Add(Kind::AxesParallel, Severity::Fault, diagnosis.axes.angleBetween);
        return true;
    }

    void JudgeMistakes() {
        const fit::HeadFit& fit = diagnosis.head;
        if (std::sqrt(fit.NoiseVariance()) > MisfitCeiling() || MistakesAreTooMany(sets, fit.model)) {
            return Add(Kind::PointsContradict, Severity::Fault, plain.Rms(), 0.0, FarthestOff());
        }
        for (std::size_t i = 0; i < fit.model.errors.size(); ++i) {
            if (auto finding = JudgeMistake(capture, fit.model, i)) findings.push_back(*std::move(finding));
        }
        if (HasFault()) return;
        if (std::sqrt(VarianceOnCircles()) > thresholds::noiseCeiling) {
            Add(Kind::PointsContradict, Severity::Fault, plain.Rms(), 0.0, FarthestOff());
        } else {
            JudgeExactness();
        }
    }

    /// The largest standard deviation of a coordinate about the fitted head that is not a fault. The mistakes that were
    /// found are in the fit. The limit is the sum of what unexplained small errors, inexact index positions and noise
    /// may contribute, and at most noiseCeiling.
    double MisfitCeiling() const {
        const double ofIndexing =
            model::ToRadians(thresholds::indexCeiling) * model::SafeLength(diagnosis.head.model.tip);
        return std::min(thresholds::noiseCeiling,
                        thresholds::smallErrors + ofIndexing + 2.0 * std::sqrt(VarianceOnCircles()));
    }

    /// The variance of the noise by both circles, at least that of rounding.
    double VarianceOnCircles() const {
        const double sum = diagnosis.aCircle.sumOfSquares + diagnosis.bCircle.sumOfSquares;
        return std::max(sum / diagnosis.noise.degreesOfFreedom, thresholds::leastVariance);
    }

    /// The three points farthest off their places.
    std::vector<std::size_t> FarthestOff() const {
        std::vector<std::size_t> order = captures::PointRange(0, diagnosis.points.size());
        constexpr std::size_t most = 3;
        const std::size_t count = std::min(order.size(), most);
        std::ranges::partial_sort(order, order.begin() + static_cast<std::ptrdiff_t>(count), std::ranges::greater(),
                                  [this](std::size_t i) { return diagnosis.points[i].offPlace; });
        order.resize(count);
        std::ranges::sort(order);
        return order;
    }

    /// Finds points that are farther from the places that the angles give them than from their circles.
    void JudgeExactness() {
        const SetWeights& weights = diagnosis.noise.weights;
        const double onCircles =
            weights.a * diagnosis.aCircle.sumOfSquares + weights.b * diagnosis.bCircle.sumOfSquares;
        const int degreesOfFreedom = diagnosis.noise.degreesOfFreedom;
        const double variance = std::max(onCircles / degreesOfFreedom, thresholds::leastVariance);
        const int more = diagnosis.head.degreesOfFreedom - degreesOfFreedom;
        const double excess = (diagnosis.head.sumOfSquares - onCircles) / more;
        if (!(fit::FTestUpperTail(excess / variance, more, degreesOfFreedom) < thresholds::falseAlarmRate)) return;
        Add(Kind::AnglesInexact, Severity::Warning, std::sqrt(excess), 0.0, FarthestOff());
    }

    /// The points form a head, but the length of its stylus is impossible.
    bool JudgeStylus() {
        const double length = model::SafeLength(plain.model.tip);
        // The residuals of points that form a head are small in any unit, compared with the stylus.
        constexpr double smallShare = 0.02;
        if (!(plain.Rms() < smallShare * length)) return false;
        if (length >= thresholds::shortestStylus && length <= thresholds::longestStylus) return false;
        constexpr double inch = 25.4, metre = 1000.0;
        const double factor = length > thresholds::longestStylus            ? 1.0 / metre
                              : length * inch >= thresholds::shortestStylus ? inch
                                                                            : metre;
        Add(Kind::UnitsWrong, Severity::Fault, length, factor);
        return true;
    }

    /// A figure that should be 0: it differs by more than its noise, and enough to matter.
    void JudgeAxis(Kind kind, double figure, double standardDeviation, double worthAWarning, double beyondAnyHead) {
        if (!(std::abs(figure) > thresholds::surely * standardDeviation) || std::abs(figure) < worthAWarning) return;
        Add(kind, std::abs(figure) < beyondAnyHead ? Severity::Warning : Severity::Fault, std::abs(figure),
            standardDeviation);
    }

    void JudgeAxes() {
        const fit::HeadAxes& axes = diagnosis.axes;
        const auto& [lean, deviation] = axes.offVertical;
        constexpr double wide = 5.0; // degrees: from here on the standard deviation means nothing
        JudgeAxis(Kind::HeadLeans, lean, lean > wide ? 0.0 : deviation, thresholds::tiltWorthAWarning,
                  thresholds::tiltBeyondAnyHead);
        JudgeAxis(Kind::AxesNotSquare, axes.squareness.value, axes.squareness.standardDeviation,
                  thresholds::tiltWorthAWarning, thresholds::tiltBeyondAnyHead);
        JudgeAxis(Kind::AxesApart, axes.axisOffset.value, axes.axisOffset.standardDeviation,
                  thresholds::offsetWorthAWarning, thresholds::offsetBeyondAnyHead);
    }

    void JudgeRotation() {
        const double difference = diagnosis.rotationDifference;
        if (!(std::abs(difference) >= thresholds::leastWrongRotation)) return;
        const double standardDeviation =
            std::hypot(diagnosis.axes.rotationStandardDeviation, diagnosis.MountingStandardDeviation());
        if (!(std::abs(difference) > thresholds::surely * standardDeviation)) return;
        const Kind reason = ReasonForRotation();
        // When no reason is known, a small difference may come from slight errors of the head or of the capture.
        const bool isSlight = reason == Kind::RotationDisagrees && std::abs(difference) < thresholds::rotationBeyondAll;
        Finding finding{reason,
                        isSlight ? Severity::Warning : Severity::Fault,
                        {},
                        capture.rotation,
                        diagnosis.head.MountingDegrees()};
        if (finding.kind != Kind::TiltReversed) {
            finding.captureAt = fit::SwivelWithSafeQuadrant(diagnosis.head.model, Tilts());
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
        const fit::HeadModel& head = diagnosis.head.model;
        const fit::HeadModel straight = fit::WithStraightStylus(head);
        const std::vector<double> tilts = Tilts();
        const double swivel = sets.points.front().b;
        const double byQuadrant = model::Wrapped(fit::RotationByQuadrant(head, tilts, swivel) - capture.rotation);
        if (std::abs(byQuadrant) > std::abs(diagnosis.rotationDifference) / 2.0) return Kind::RotationDisagrees;
        // With a straight stylus there is a B at which the quadrant is right.
        if (!head.StylusHangs() || !fit::SwivelWithSafeQuadrant(straight, tilts)) return Kind::TiltReversed;
        return fit::QuadrantIsRight(straight, tilts, swivel) ? Kind::TipOffAxis : Kind::RotationOnWrongSide;
    }

    /// Points that are off the circle of the others, without another finding about them.
    void JudgePoints() {
        const auto count = static_cast<double>(diagnosis.points.size());
        for (std::size_t i = 0; i < diagnosis.points.size(); ++i) {
            const auto& influence = diagnosis.points[i].influence;
            if (!influence || !(influence->pValue * count < thresholds::falseAlarmRate)) continue;
            const auto isKnown = [i](const Finding& each) {
                return std::ranges::find(each.points, i) != each.points.end();
            };
            if (std::ranges::any_of(findings, isKnown)) continue;
            const fit::CirclePoint& place = diagnosis.points[i].onCircle;
            Add(Kind::PointSuspicious, Severity::Warning, std::hypot(place.radial, place.outOfPlane), 0.0, {i});
        }
    }

    /// The standard deviation of the difference of the component's head centre and the fitted one, along one axis.
    double StandardDeviationOfDifference(std::size_t axis) const {
        const double ofFit = diagnosis.StandardDeviationByFit(diagnosis.head.poleSphereVariance[axis]);
        return std::hypot(diagnosis.axes.headCentre[axis].standardDeviation, ofFit);
    }

    /// Compares the component's head centre with that of the circles through the same points, and with that of the head
    /// fitted with the angles.
    void JudgeCentre() {
        const auto& axes = diagnosis.axes.headCentre;
        const Vector3 ofCircles{axes[0].value, axes[1].value, axes[2].value};
        const Vector3 centre = capture.headCentre.value_or(ofCircles);
        const double apart = model::SafeLength(centre - ofCircles);
        if (!(apart <= thresholds::sameComputation * std::max(1.0, 0.01 * model::SafeLength(centre)))) {
            Add(Kind::ComponentDiffers, Severity::Fault, apart);
        }
        for (std::size_t i = 0; i < 3; ++i) {
            const double difference = centre[i] - diagnosis.head.model.poleSphere[i];
            if (std::abs(difference) < thresholds::leastWrongCentre) continue;
            if (!(std::abs(difference) > thresholds::surely * StandardDeviationOfDifference(i))) continue;
            return Add(Kind::CentreDisagrees, Severity::Fault,
                       model::SafeLength(centre - diagnosis.head.model.poleSphere), StandardDeviationOfDifference(i));
        }
    }

    /// Compares the results with what the user has measured by other means.
    void JudgeKnown() {
        const Vector3 centre = capture.headCentre.value_or(diagnosis.head.model.poleSphere);
        if (capture.knownSphere) {
            const Vector3 off = centre - *capture.knownSphere;
            const double least =
                std::max(thresholds::sphereElsewhere, thresholds::surely * diagnosis.axes.CentreStandardDeviation());
            // The difference is the shift of unlocking, which was subtracted although the points were captured locked.
            const double unlocking = model::SafeLength(capture.unlocking);
            const bool isLocked = unlocking > least && model::SafeLength(off + capture.unlocking) < least;
            if (!(model::SafeLength(off) <= least)) {
                findings.push_back({Kind::SphereElsewhere,
                                    Severity::Fault,
                                    {},
                                    model::SafeLength(off),
                                    0.0,
                                    std::nullopt,
                                    off,
                                    isLocked ? 1 : 0});
            }
        }
        if (capture.knownStylus) {
            const double length = model::SafeLength(diagnosis.head.model.tip);
            const double deviation = diagnosis.StandardDeviationByFit(diagnosis.head.tipVariance);
            if (!(std::abs(length - *capture.knownStylus) <=
                  std::max(thresholds::otherStylusLength, thresholds::surely * deviation))) {
                Add(Kind::StylusLengthDiffers, Severity::Fault, length, *capture.knownStylus);
            }
        }
    }

    /// Twice the standard deviation of the head centre.
    double CentreWithin(const fit::PointNoise& noise) const {
        return 2.0 * fit::CompareAxes(diagnosis.aCircle, diagnosis.bCircle, noise).CentreStandardDeviation();
    }
    /// The noise, but at least that of the best machine.
    static fit::PointNoise NoMachineIsBetter(const fit::PointNoise& noise) {
        const double least = thresholds::pointNoiseAtLeast;
        return {std::max(noise.aSet, least), std::max(noise.bSet, least)};
    }

    /// A warning follows from the noise that the points show. A fault follows from the widened noise, the largest that
    /// few points leave possible.
    void JudgePrecision() {
        const double ofCircles = std::sqrt(VarianceOnCircles());
        const fit::PointNoise shown = NoMachineIsBetter(
            diagnosis.noise.isUneven ? diagnosis.noise.perSet : fit::PointNoise{ofCircles, ofCircles});
        const double possible = CentreWithin(NoMachineIsBetter(diagnosis.noise.widened));
        const bool isUnknown = !(possible <= thresholds::centreUnknown * capture.centreWithin);
        const double known = isUnknown ? possible : CentreWithin(shown);
        if (known <= capture.centreWithin) return;
        const bool isOfASet = CentreWithin({shown.aSet, 0.0}) > CentreWithin({0.0, shown.bSet});
        const Kind kind = ReasonForPrecision(isOfASet);
        // The stylus is then within 12 degrees of the B axis.
        constexpr double hangingShare = 0.2;
        if (isUnknown && !isOfASet && kind == Kind::CentreUncertain &&
            diagnosis.bCircle.radius < hangingShare * model::SafeLength(diagnosis.head.model.tip)) {
            return Add(Kind::CircleTooSmall, Severity::Fault, diagnosis.bCircle.radius, 0.0,
                       captures::PointRange(sets.aCount, sets.points.size()));
        }
        Add(kind, isUnknown ? Severity::Fault : Severity::Warning, known, capture.centreWithin);
    }
    Kind ReasonForPrecision(bool isOfASet) const {
        // Degrees. A turns no farther than 90. From 180 on, a B circle's centre is known as well as one point.
        constexpr double ampleTilt = 80.0, ampleSwivel = 180.0;
        if (isOfASet && diagnosis.aCircle.arcCovered < ampleTilt) return Kind::TiltArcShort;
        if (!isOfASet && diagnosis.bCircle.arcCovered < ampleSwivel) return Kind::SwivelArcShort;
        return Kind::CentreUncertain;
    }

    void JudgePrecisionOfRotation() {
        const double known = 2.0 * diagnosis.axes.rotationStandardDeviation;
        if (known <= thresholds::rotationWithin) return;
        Add(Kind::RotationUncertain, known <= thresholds::rotationUnknown ? Severity::Warning : Severity::Fault, known,
            thresholds::rotationWithin);
    }

    void NoteFewPoints() {
        const auto isUnknown = [](const PointDiagnosis& point) { return !point.influence; };
        for (const auto& [first, last] : {std::pair{std::size_t{0}, sets.aCount}, {sets.aCount, sets.points.size()}}) {
            const auto points = std::span(diagnosis.points).subspan(first, last - first);
            if (std::ranges::any_of(points, isUnknown)) {
                Add(Kind::FewPoints, Severity::Note, static_cast<double>(points.size()), 0.0,
                    captures::PointRange(first, last));
            }
        }
    }

    const CaptureUnderTest& capture;
    const captures::CapturedSets& sets;
    const fit::HeadFit& plain;
    const Diagnosis& diagnosis;
    std::vector<Finding> findings;
};

} // namespace

std::vector<Finding> Judge(const CaptureUnderTest& capture, const fit::HeadFit& plain, const Diagnosis& diagnosis) {
    return Evaluation(capture, plain, diagnosis).All();
}

} // namespace qmv40::diagnosis
