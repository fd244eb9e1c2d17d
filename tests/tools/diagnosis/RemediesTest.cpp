// What becomes of a capture when its finding's remedy is followed to the letter, on the machine and head as they stand
// now.

#include "tests/tools/diagnosis/PaperTrial.h"
#include "tools/report/FindingMessage.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

using namespace qmv40::diagnosis;
using namespace qmv40::captures;
using paper::Measurement;
using paper::Measurements;
using qmv40::model::Vector3;
using qmv40::report::MessageFor;
using testing::AnyOf;
using testing::HasSubstr;

namespace {

/// Somebody who does what a remedy says, and nothing else.
class Follower {
public:
    explicit Follower(PaperCapture& theCapture)
        : capture(theCapture), now((capture.aSetIsFirst ? capture.bSet : capture.aSet).back()) {
        now.shift = capture.head.shift;
    }

    /// False if the finding says that such a head cannot be computed.
    bool Follow(const Finding& finding) {
        const bool cameAgain = std::ranges::find(followed, finding.kind) != followed.end();
        followed.push_back(finding.kind);
        // The remedy did not help before. Now both sets are captured again, and the remedy must say so.
        if (cameAgain) {
            EXPECT_THAT(RemedyOf(finding), HasSubstr("apture both sets again"));
        }
        if (cameAgain || capture.aLines.size() != capture.aSet.size() || capture.bLines.size() != capture.bSet.size()) {
            CaptureBothSets(finding.kind);
            return true;
        }
        switch (finding.kind) {
        case FindingKind::ArmHorizontal:
            return false;
        case FindingKind::PointOff:
        case FindingKind::PointSuspicious:
        case FindingKind::CapturedLocked:
            for (const std::size_t point : finding.points) MeasureAgain(point);
            break;
        case FindingKind::AngleMistyped:
        case FindingKind::AnglesSwapped:
        case FindingKind::OtherAxisNotHeld:
            for (const std::size_t point : finding.points) CompareWithNotes(point);
            break;
        case FindingKind::TiltReversed:
        case FindingKind::SwivelReversed:
        case FindingKind::SetAngleWrong:
            for (std::size_t point = 0; point < capture.aSet.size() + capture.bSet.size(); ++point)
                CompareWithNotes(point);
            break;
        case FindingKind::TiltArcShort:
            CaptureASet(45.0);
            break;
        case FindingKind::TipOffAxis:
            StraightenStylus();
            CaptureASet(45.0);
            break;
        case FindingKind::RotationOnWrongSide:
            CaptureASet(finding.captureAt.value_or(45.0));
            break;
        case FindingKind::SwivelArcShort:
        case FindingKind::CircleTooSmall:
            CaptureBSet();
            break;
        case FindingKind::TooFewPositions:
        case FindingKind::OtherAxisMoved:
            CaptureSetOf(finding);
            break;
        case FindingKind::TipInForce:
            if (finding.detail == 0) {
                CaptureBothSets(finding.kind);
            } else {
                CaptureSetOf(finding);
            }
            break;
        default:
            EXPECT_THAT(RemedyOf(finding), AnyOf(HasSubstr("apture both sets again"), HasSubstr("apture again")));
            CaptureBothSets(finding.kind);
        }
        return true;
    }

private:
    static CaptureFile FileOf(const char* name, const std::vector<paper::CapturedLine>& lines) {
        CaptureFile file{name, ItemsOf(lines), {}};
        for (std::size_t i = 0; i < lines.size(); ++i) file.lines.push_back(i + 2);
        return file;
    }
    std::string RemedyOf(const Finding& finding) const {
        return MessageFor(finding, {FileOf("a.csv", capture.aLines), FileOf("b.csv", capture.bLines)}, {}).remedy;
    }

    Measurement& MeasurementOf(std::size_t point) {
        return point < capture.aSet.size() ? capture.aSet[point] : capture.bSet[point - capture.aSet.size()];
    }
    paper::CapturedLine& LineOf(std::size_t point) {
        return point < capture.aSet.size() ? capture.aLines[point] : capture.bLines[point - capture.aSet.size()];
    }

    Measurement StandingAt(double a, double b) const {
        Measurement each = now;
        each.a = each.writtenA = a;
        each.b = each.writtenB = b;
        return each;
    }
    Measurements Set(const std::vector<double>& tilts, const std::vector<double>& swivels) const {
        Measurements set;
        for (const double a : tilts)
            for (const double b : swivels) set.push_back(StandingAt(a, b));
        return set;
    }

    void MeasureAgain(std::size_t point) {
        Measurement& each = MeasurementOf(point);
        each = StandingAt(LineOf(point).a, LineOf(point).b);
        LineOf(point) = paper::LinesOf({each}, capture.noise, capture.generator).front();
    }
    /// The notes say where the head stood. When the file says the same, the point is in doubt.
    void CompareWithNotes(std::size_t point) {
        const Measurement& each = MeasurementOf(point);
        paper::CapturedLine& line = LineOf(point);
        if (line.a == each.a && line.b == each.b) return MeasureAgain(point);
        line.a = each.a;
        line.b = each.b;
    }

    void StraightenStylus() { now.tip = {0.0, 0.0, now.tip.z}; }
    void CaptureASet(double heldAt) {
        capture.aSet = Set({0, 15, 30, 45, 60, 75, 90}, {heldAt});
        capture.aLines = paper::LinesOf(capture.aSet, capture.noise, capture.generator);
    }
    void CaptureBSet() {
        capture.bSet = Set({90}, {-180, -150, -120, -90, -60, -30, 0, 30, 60, 90, 120, 150});
        capture.bLines = paper::LinesOf(capture.bSet, capture.noise, capture.generator);
    }
    void CaptureSetOf(const Finding& finding) {
        if (finding.points.front() < capture.aSet.size()) {
            CaptureASet(45.0);
        } else {
            CaptureBSet();
        }
    }
    /// Everything is tight, in its place and as the remedy wants it.
    void CaptureBothSets(FindingKind kind) {
        if (kind == FindingKind::HeadLeans) now.leanX = now.leanY = 0.0;
        if (kind == FindingKind::AxesNotSquare) now.squareness = 0.0;
        if (kind == FindingKind::AxesApart) now.axisOffset = 0.0;
        if (kind == FindingKind::StylusBent || kind == FindingKind::SetsApart) StraightenStylus();
        if (kind == FindingKind::StylusLengthDiffers) capture.knownStylus = -now.tip.z;
        capture.noise = std::min(capture.noise, 0.005);
        CaptureASet(45.0);
        CaptureBSet();
    }

    PaperCapture& capture;
    Measurement now;
    std::vector<FindingKind> followed;
};

/// The finding that is shown first: the first fault.
const Finding& Worst(const PaperTrial& trial) {
    return *std::ranges::find(trial.findings, Severity::Fault, &Finding::severity);
}

TEST(Remedies, LeadToARightGeometryWhenTheyAreFollowed) {
    constexpr int mostRemedies = 4;
    for (const HumanKind& kind : CommonMistakes()) {
        const std::uint64_t seed = 8100 + static_cast<std::uint64_t>(&kind - CommonMistakes().data());
        PaperCapture capture = MakeCapture(kind, seed);
        std::string way = kind.name + (", seed " + std::to_string(seed));
        Follower follower(capture);
        bool canBeCured = true;
        PaperTrial trial(capture);
        for (int i = 0; i < mostRemedies && canBeCured && !trial.IsAccepted() && trial.HasFault(); ++i) {
            way += "\n  " + trial.Text();
            canBeCured = follower.Follow(Worst(trial));
            trial = PaperTrial(capture);
        }
        EXPECT_TRUE(!canBeCured || (trial.IsAccepted() && !trial.IsWrong())) << way << "\n  " << trial.Text();
    }
}

} // namespace
