#include "tools/diagnosis/Diagnosis.h"

#include "tools/diagnosis/CaptureEvaluation.h"
#include "tools/diagnosis/SetJudgement.h"
#include "tools/diagnosis/fit/Statistics.h"
#include "tools/model/Angles.h"

#include <cmath>

namespace qmv40::diagnosis {

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
    const Explanation explained = ExplainCapture(sets, capture.unlocking);
    if (!std::isfinite(explained.fit.sumOfSquares)) return std::nullopt;

    const NoiseFigures noise = NoiseOf(sets, *aCircle, *bCircle, explained);
    const double difference = model::Wrapped(capture.rotation - explained.fit.MountingDegrees());
    Diagnosis diagnosis{*aCircle,
                        *bCircle,
                        noise,
                        fit::CompareAxes(*aCircle, *bCircle, noise.widened),
                        explained.fit,
                        explained.rewriting,
                        difference,
                        PointsOf(sets, *aCircle, *bCircle, explained.fit.model),
                        {}};
    diagnosis.findings = Judge(capture, explained.plain, diagnosis);
    return diagnosis;
}

Judgement JudgeCapture(const CaptureUnderTest& capture) {
    Judgement judgement{JudgeSets(capture.sets), std::nullopt};
    if (!judgement.findings.empty()) return judgement;
    judgement.diagnosis = Diagnose(capture);
    judgement.findings = judgement.diagnosis ? judgement.diagnosis->findings
                                             : std::vector{Finding{FindingKind::NumbersTooLarge, Severity::Fault, {}}};
    return judgement;
}

} // namespace qmv40::diagnosis
