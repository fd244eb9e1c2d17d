#include "tests/tools/diagnosis/PaperTrial.h"

#include "head/RoundThePole.h"
#include "tests/support/AlignmentArray.h"
#include "tools/captures/Capture.h"
#include "tools/diagnosis/SetJudgement.h"
#include "tools/model/Angles.h"

#include <algorithm>
#include <sstream>

using namespace qmv40;

namespace {

constexpr model::Vector3 unlocking{0.0, 0.0, -1.5};

} // namespace

Items ItemsOf(const std::vector<paper::CapturedLine>& lines) {
    Items items;
    for (const auto& line : lines) {
        items.push_back({line.a, line.b, line.position.x, line.position.y, line.position.z});
    }
    return items;
}

diagnosis::CaptureUnderTest UnderTest(const Items& aSet, const Items& bSet) {
    RoundThePole head;
    AlignmentArray aArray(aSet), bArray(bSet);
    head.ComputeGeometry(aArray.Address(), bArray.Address());
    const CMaVector centre = head.HeadCentre();
    diagnosis::CaptureUnderTest test{captures::SetsOf(aSet, bSet, unlocking), head.RequiredRotationAroundZ()};
    test.headCentre = {centre[0], centre[1], centre[2]};
    test.unlocking = unlocking;
    return test;
}

PaperTrial::PaperTrial(const PaperCapture& capture) {
    const Items aSet = ItemsOf(capture.aLines), bSet = ItemsOf(capture.bLines);
    diagnosis::CaptureUnderTest test;
    try {
        test = UnderTest(aSet, bSet);
        componentAnswered = true;
    } catch (const HRESULT) {
        const captures::CapturedSets sets = captures::SetsOf(aSet, bSet, unlocking);
        findings = diagnosis::JudgeHeldAngles(sets);
        if (findings.empty()) findings = diagnosis::JudgeSets(sets);
        return;
    }
    test.knownSphere = capture.knownSphere;
    test.knownStylus = capture.knownStylus;
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
