#include "tests/tools/diagnosis/PaperTrial.h"

#include "head/RoundThePole.h"
#include "tests/support/AlignmentArray.h"
#include "tools/diagnosis/HeldAngles.h"
#include "tools/diagnosis/SetJudgement.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <sstream>

using namespace qmv40;

namespace {

std::vector<HeadAlignmentDataItem> ItemsOf(const std::vector<paper::CapturedLine>& lines) {
    std::vector<HeadAlignmentDataItem> items;
    for (const auto& line : lines) {
        items.push_back({line.a, line.b, line.position.x, line.position.y, line.position.z});
    }
    return items;
}

diagnosis::fit::CapturedSets SetsOf(const PaperCapture& capture, const model::Vector3& unlocking) {
    diagnosis::fit::CapturedSets sets;
    for (const auto* const lines : {&capture.aLines, &capture.bLines}) {
        for (const auto& line : *lines) sets.points.push_back({line.a, line.b, line.position - unlocking});
    }
    sets.aCount = capture.aLines.size();
    return sets;
}

} // namespace

PaperTrial::PaperTrial(const PaperCapture& capture) {
    diagnosis::CaptureUnderTest test;
    test.unlocking = {0.0, 0.0, -1.5};
    test.sets = SetsOf(capture, test.unlocking);
    test.knownSphere = capture.knownSphere;
    test.knownStylus = capture.knownStylus;
    RoundThePole head;
    try {
        AlignmentArray aArray(ItemsOf(capture.aLines)), bArray(ItemsOf(capture.bLines));
        head.ComputeGeometry(aArray.Address(), bArray.Address());
        componentAnswered = true;
    } catch (const HRESULT) {
        findings = diagnosis::JudgeHeldAngles(test.sets);
        if (findings.empty()) findings = diagnosis::JudgeSets(test.sets);
        return;
    }
    const CMaVector centre = head.HeadCentre();
    test.headCentre = {centre[0], centre[1], centre[2]};
    test.rotation = head.RequiredRotationAroundZ();
    centreOff = model::SafeLength(*test.headCentre - capture.TrueCentre());
    rotationOff = std::abs(model::Wrapped(test.rotation - capture.TrueMounting()));
    diagnosis::Judgement judgement = diagnosis::JudgeCapture(test);
    findings = std::move(judgement.findings);
    if (judgement.diagnosis) {
        centreKnown = judgement.diagnosis->axes.CentreStandardDeviation();
        rotationKnown = judgement.diagnosis->axes.rotationStandardDeviation;
    }
    isWrong = !(centreOff <= 0.5) || !(rotationOff <= 0.2) || (centreOff > 0.1 && centreOff > 4.0 * centreKnown) ||
              (rotationOff > 0.05 && rotationOff > 4.0 * rotationKnown);
}

bool PaperTrial::HasFault() const {
    return std::ranges::any_of(findings, [](const auto& each) { return each.severity == diagnosis::Severity::Fault; });
}

bool PaperTrial::Names(const std::vector<std::string_view>& culprits) const {
    return culprits.empty() || std::ranges::any_of(findings, [&](const auto& each) {
               return std::ranges::find(culprits, diagnosis::NameOf(each.kind)) != culprits.end();
           });
}

std::string PaperTrial::Text() const {
    std::ostringstream text;
    text << "off by " << centreOff << " mm (known to " << centreKnown << "), " << rotationOff << " deg (known to "
         << rotationKnown << ")";
    for (const auto& each : findings) {
        text << "; " << NameOf(each.severity) << ' ' << NameOf(each.kind) << ' ' << each.figure << ' ' << each.reference
             << " [" << each.vector.x << ' ' << each.vector.y << ' ' << each.vector.z << "] points";
        for (std::size_t i = 0; i < std::min<std::size_t>(each.points.size(), 4); ++i) text << ' ' << each.points[i];
        if (each.points.size() > 4) text << " .. " << each.points.back();
    }
    return text.str();
}
