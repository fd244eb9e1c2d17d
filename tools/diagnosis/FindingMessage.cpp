#include "tools/diagnosis/FindingMessage.h"

#include "tools/text/Numbers.h"

#include <cmath>

namespace qmv40::diagnosis {

namespace {

/// Three figures that count, and never more than six decimals.
std::string LengthText(double length) {
    const double size = std::abs(length);
    const int decimals = size >= 100.0 ? 1 : size >= 0.01 ? 3 : 6;
    return text::FixedText(length, decimals) + " mm";
}

/// An angle as people write it: tenths, where there are any.
std::string RoundAngle(double degrees) { return text::ExactText(std::round(degrees * 10.0) / 10.0 + 0.0); }

std::string ExactAngle(double degrees) { return text::FixedText(degrees, 4) + " deg"; }

/// Makes the words for one finding.
class Wording {
public:
    Wording(const Finding& theFinding, const CaptureFiles& theFiles, const model::Vector3& theTip)
        : finding(theFinding), files(theFiles), tip(theTip) {}

    FindingWords Words() const {
        switch (finding.kind) {
        case FindingKind::SetsExchanged:
            return {"The sets are exchanged: what is given as the A set was captured while B was turned, and the other "
                    "way round.",
                    "Give the other file as --a-axis. If the columns APosition and BPosition are exchanged too, put "
                    "them right."};
        case FindingKind::OtherAxisNotHeld:
            return {Held() + " of " + Points() + " is not the " + RoundAngle(finding.figure) + " of the others.",
                    "Put the angle right in the file. If " + Held() + " did move, capture the set again."};
        case FindingKind::SwivelReversed:
            return {std::string("B counts the wrong way round in ") +
                        (finding.figure == 0.0 ? "both sets." : "the B set."),
                    "B grows as the head turns from machine X towards machine Y, counter-clockwise seen from above: "
                    "write B with the other sign."};
        case FindingKind::TiltReversed:
            return {Rotations() + ": A counts the wrong way round.",
                    "A is 0 with the stylus hanging straight down and grows to 90 as it is tilted: write A so."};
        case FindingKind::AnglesSwapped:
            return {files.NameOf(finding.points[0]) + " and " + files.NameOf(finding.points[1]) +
                        " have each other's " + Turned() + ".",
                    "Exchange the two angles in the file."};
        case FindingKind::AngleMistyped:
            return {WrongAngle(Turned(), TurnedAngle()),
                    "Put the angle right in the file, or measure the points again."};
        case FindingKind::OtherAxisMoved:
            return {WrongAngle(Held(), HeldAngle()), "Lock " + Held() + " and capture the " + Set() + " set again."};
        case FindingKind::SetAngleWrong:
            return WrongSetAngle();
        case FindingKind::PointOff:
        case FindingKind::PointSuspicious:
            return {Points() + " lies " + LengthText(finding.figure) + " off its place.",
                    "Measure the point again, with the head locked and ball and sphere clean."};
        case FindingKind::SetsApart:
            return {"Between the two sets the pole sphere, the stylus or the machine's zero moved by " +
                        LengthText(finding.figure) + ".",
                    "Clamp the sphere, leave the stylus and the zero alone, and capture both sets again."};
        case FindingKind::PointsContradict:
            return {"The points leave the places that their angles give them by " + LengthText(finding.figure) +
                        " (RMS), and no single mistake explains it. Farthest off: " + Points() + ".",
                    "Look for exchanged columns, signs and units, and for a stylus that was changed; then capture both "
                    "sets again."};
        case FindingKind::AnglesInexact:
            return {"The points leave the places that their angles give them by " + LengthText(finding.figure) +
                        " (RMS) more than they scatter. Farthest off: " + Points() + ".",
                    "See that the head is locked at every position. If it stays so, the head does not sit true in its "
                    "notches."};
        case FindingKind::AxesParallel:
            return {"The two axes are " + ExactAngle(finding.figure) +
                        " apart; those of a head are square. The head "
                        "centre is far off.",
                    "Turn A alone for the A set and B alone for the B set, and give each file once."};
        default:
            return WordsOnQuality();
        }
    }

private:
    FindingWords WordsOnQuality() const {
        switch (finding.kind) {
        case FindingKind::AxesNotSquare:
            return {"The axes are out of square by " + WithDeviation(4, "deg") + ".", MechanicalRemedy()};
        case FindingKind::HeadLeans:
            return {"The B axis leans by " + WithDeviation(4, "deg") +
                        " off machine Z. The component takes it to be "
                        "vertical.",
                    "Mount the head straight. A lever is off by 0.8 mm for each degree."};
        case FindingKind::AxesApart:
            return {"The A axis passes the B axis at " + WithDeviation(4, "mm") + ".", MechanicalRemedy()};
        case FindingKind::RotationOnWrongSide:
            return {Rotations() + ": at B = " + CaptureB() +
                        " the plane of the A points stands too near the edge of a quadrant, and the wrong side was "
                        "taken.",
                    finding.captureAt ? "Capture the A set at B = " + RoundAngle(*finding.captureAt) + "."
                                      : "Capture the A set at B = 45 with a straight, longer stylus, A up to 90."};
        case FindingKind::TipOffAxis:
            return {
                Rotations() + ": the stylus tip stands " + LengthText(std::hypot(tip.x, tip.y)) +
                    " off the swivel axis, which moves the A points into another quadrant.",
                "Capture the A set with a straight stylus" +
                    (finding.captureAt ? ", or with this one at B = " + RoundAngle(*finding.captureAt) + "." : ".")};
        case FindingKind::RotationDisagrees:
            return {Rotations() + ", for no reason that could be found.",
                    "Capture both sets again, the A set at B = 45 with a straight stylus."};
        case FindingKind::TiltArcShort:
            return {"The A set does not turn far: " + CentreKnown(),
                    "Capture A over its whole range, 0 to 90 in steps of 15."};
        case FindingKind::SwivelArcShort:
            return {"The B set does not turn far: " + CentreKnown(), "Capture B all round the circle."};
        case FindingKind::CentreUncertain:
            return {"The points scatter much: " + CentreKnown(), "Find out why they scatter, or capture more of them."};
        case FindingKind::NoiseUneven:
            return {"The points of the A set scatter by " + LengthText(finding.figure) + ", those of the B set by " +
                        LengthText(finding.reference) + ".",
                    "Find out why: a loose stylus, a head that was not locked, a dirty sphere."};
        case FindingKind::FewPoints:
            return {"The " + Set() + " set has " + std::to_string(finding.points.size()) +
                        " points: too few to tell from its circle alone whether one of them is off.",
                    "Seven points or more can be judged one by one."};
        default:
            return {};
        }
    }

    // The axis that was turned for the set, and the one that was held
    bool IsOfASet() const { return files.IsOfASet(finding.points.front()); }
    std::string Set() const { return IsOfASet() ? "A" : "B"; }
    std::string Turned() const { return Set(); }
    std::string Held() const { return IsOfASet() ? "B" : "A"; }
    double TurnedAngle() const {
        const HeadAlignmentDataItem& item = files.ItemOf(finding.points.front());
        return IsOfASet() ? item.APosition : item.BPosition;
    }
    double HeldAngle() const {
        const HeadAlignmentDataItem& item = files.ItemOf(finding.points.front());
        return IsOfASet() ? item.BPosition : item.APosition;
    }

    std::string WrongAngle(const std::string& axis, double written) const {
        if (finding.points.size() == 1) {
            return Points() + " was captured at " + axis + " = " + RoundAngle(Turn(written + finding.figure)) +
                   ", not at the " + RoundAngle(written) + " that is written down.";
        }
        return Points() + " were captured at " + axis + " " + RoundAngle(std::abs(finding.figure)) +
               (finding.figure > 0.0 ? " more" : " less") + " than is written down.";
    }

    FindingWords WrongSetAngle() const {
        const std::string other = IsOfASet() ? "B" : "A";
        return {"The sets do not belong together: the " + Set() + " set was captured at " + Held() + " = " +
                    RoundAngle(Turn(HeldAngle() + finding.figure)) + ", not at " + RoundAngle(HeldAngle()) + ", or " +
                    other + " of the other set is wrong throughout.",
                "Find out which of the two it is and put the angles right in that file; if in doubt, capture the " +
                    Set() + " set again."};
    }

    static double Turn(double degrees) { return std::abs(degrees) > 180.0 ? std::remainder(degrees, 360.0) : degrees; }

    std::string Points() const {
        const auto& points = finding.points;
        const bool isRun = points.size() > 3 && points.back() - points.front() + 1 == points.size();
        if (isRun) return files.NameOf(points.front()) + " to " + files.NameOf(points.back());
        std::string text;
        for (const std::size_t point : points) {
            if (!text.empty()) text += point == points.back() ? " and " : ", ";
            text += files.NameOf(point);
        }
        return text;
    }

    std::string CaptureB() const { return RoundAngle(files.aAxis.items.front().BPosition); }

    std::string Rotations() const {
        return "The component finds the head turned by " + ExactAngle(finding.figure) + ", the captured angles say " +
               ExactAngle(finding.reference);
    }

    std::string WithDeviation(int decimals, const std::string& unit) const {
        return text::FixedText(finding.figure, decimals) + " " + unit + " (standard deviation " +
               text::FixedText(finding.reference, decimals) + ")";
    }

    std::string CentreKnown() const {
        return "the head centre is known to " + LengthText(finding.figure) + ", twice its standard deviation, where " +
               LengthText(finding.reference) + " are asked for.";
    }

    std::string MechanicalRemedy() const {
        return finding.severity == Severity::Fault
                   ? "No head is built so: one of the sets is not what it seems. Capture both again."
                   : "Capture both sets again. If it stays so, have the head looked at.";
    }

    const Finding& finding;
    const CaptureFiles& files;
    const model::Vector3& tip;
};

} // namespace

const HeadAlignmentDataItem& CaptureFiles::ItemOf(std::size_t point) const {
    return IsOfASet(point) ? aAxis.items[point] : bAxis.items[point - aAxis.items.size()];
}

std::size_t CaptureFiles::LineOf(std::size_t point) const {
    return IsOfASet(point) ? aAxis.lines[point] : bAxis.lines[point - aAxis.lines.size()];
}

std::string CaptureFiles::NameOf(std::size_t point) const {
    return FileOf(point).name + ":" + std::to_string(LineOf(point));
}

FindingWords WordsFor(const Finding& finding, const CaptureFiles& files, const model::Vector3& tip) {
    return Wording(finding, files, tip).Words();
}

} // namespace qmv40::diagnosis
