#include "tools/report/FindingMessage.h"

#include "tools/text/Numbers.h"

#include <algorithm>
#include <cmath>

namespace qmv40::report {

namespace {

using diagnosis::Finding;
using diagnosis::FindingKind;

/// With one decimal from 100 mm on, three from 0.01 mm on, and six below.
std::string LengthText(double length) {
    const double size = std::abs(length);
    const int decimals = size >= 100.0 ? 1 : size >= 0.01 ? 3 : 6;
    return text::FixedText(length, decimals) + " mm";
}

/// An angle rounded to tenths, without trailing zeros. Adding zero removes the sign of a negative zero.
std::string RoundAngle(double degrees) { return text::ExactText(std::round(degrees * 10.0) / 10.0 + 0.0); }

std::string ExactAngle(double degrees) { return text::FixedText(degrees, 4) + " deg"; }

/// Writes the message of one finding.
class MessageWriter {
public:
    MessageWriter(const Finding& theFinding, const captures::CaptureFiles& theFiles, const model::Vector3& theTip)
        : finding(theFinding), files(theFiles), tip(theTip) {}

    FindingMessage Message() const {
        switch (finding.kind) {
        case FindingKind::TooFewPositions:
            return TooFewPositions();
        case FindingKind::CircleTooSmall:
            return {"The circle of the " + Set() + " set is too small to have an axis: its points are " +
                        LengthText(finding.figure) +
                        " from their middle. With A near 0 the stylus hangs, and turning B hardly moves its tip.",
                    "Capture the B set again at A = 90 or 75."};
        case FindingKind::TipInForce:
            return {(finding.detail == 0 ? std::string("All points lie") : "The points of the " + Set() + " set lie") +
                        " in one place, where the pole sphere is: an offset of the stylus tip was in force.",
                    "Switch the tip offset off (select the tip of length 0, the machine's zero-length reference) and "
                    "capture " +
                        (finding.detail == 0 ? std::string("both sets") : "the " + Set() + " set") + " again."};
        case FindingKind::UnitsWrong:
            return UnitsWrong();
        case FindingKind::SetsExchanged:
            return {
                "The sets are exchanged: what is given as the A set was captured while B was turned, and the other "
                "way round.",
                "Give the other file as --a-axis. If the columns APosition and BPosition are exchanged too, capture "
                "again and write A into APosition."};
        case FindingKind::OtherAxisNotHeld:
            return {Held() + " of " + Points() + " is not the " + RoundAngle(finding.figure) + " of the others.",
                    "Compare with your notes. If " + Held() +
                        " is only written wrong there, and by whole steps of 15, put it right; otherwise unlock the "
                        "head, set " +
                        Held() + " to " + RoundAngle(finding.figure) + " and measure these points again."};
        case FindingKind::SwivelReversed:
            return {
                std::string("B counts the wrong way round in ") +
                    (finding.figure == 0.0 ? "both sets, or machine X is mirrored." : "the B set."),
                "B grows as the head turns from machine X towards machine Y, counter-clockwise seen from above. Look "
                "at the head: if it turns so, look at the sign of X instead; capture again with the right one."};
        case FindingKind::TiltReversed:
            return TiltReversed();
        case FindingKind::AxisMirrored:
            return Mirrored();
        case FindingKind::AxesExchanged:
            return Exchanged();
        case FindingKind::ArmHorizontal:
            return {"The head is on a horizontal arm or points up, or coordinates are in the wrong columns or have the "
                    "wrong "
                    "sign. The component takes the B axis to be machine Z, with the head below.",
                    "A head that does not hang down cannot be computed. Otherwise write each coordinate into its own "
                    "column, "
                    "with its sign."};
        case FindingKind::AnglesSwapped:
            return {
                files.NameOf(finding.points[0]) + " and " + files.NameOf(finding.points[1]) + " have each other's " +
                    Set() + ".",
                "Compare with your notes, and exchange the two angles in the file; if in doubt, unlock the head and "
                "measure both points again."};
        case FindingKind::AngleMistyped:
            return {
                WrongAngle(Set()),
                "Look at the notes or at the head. If it stood there, put the angle right in the file; if in doubt, "
                "unlock the head and measure these points again. If they are off again, capture both sets again."};
        case FindingKind::OtherAxisMoved:
            return {WrongAngle(Held()), "Hold " + Held() + " at one angle, and capture the " + Set() +
                                            " set again, with the head unlocked."};
        case FindingKind::SetAngleWrong:
            return WrongSetAngle();
        case FindingKind::CapturedLocked:
            return {Points() + WasOrWere() +
                        " captured with the head locked. Points are captured unlocked: unlocking moves them by " +
                        LengthText(finding.figure) + ".",
                    "Unlock the head and measure these points again. Do not change any coordinate in the file. If they "
                    "are off again, capture both sets again."};
        case FindingKind::TurnedOnMount:
            if (finding.detail == 1)
                return {"During the capture the head slowly turns on its mount, by " + ExactAngle(finding.figure) +
                            " in all.",
                        "Fasten the head, and capture both sets again. Do not change any angle in the file."};
            return {WhereItChanged() + " the head stands turned on its mount by " + ExactAngle(finding.figure) +
                        ". Index positions are 15 deg apart: no wrong angle explains this.",
                    "Fasten the head, and capture both sets again. Do not change any angle in the file."};
        case FindingKind::HeadTilted:
            if (finding.detail == 1)
                return {"During the capture the head slowly tilts, by about " + ExactAngle(std::abs(finding.figure)) +
                            " in all.",
                        "Fasten the head, and capture both sets again."};
            return {WhereItChanged() + " the head is tilted by about " + ExactAngle(std::abs(finding.figure)) + ".",
                    "Fasten the head and look whether it was hit; then capture both sets again."};
        case FindingKind::SphereMoved:
            return {"From " + First() + " on the pole sphere or the machine's zero stands elsewhere, by " + MoveText() +
                        ".",
                    "Clamp the sphere, leave the machine's zero alone, and capture both sets again."};
        case FindingKind::SetsApart:
            return {"Between the two sets the pole sphere, the stylus tip or the machine's zero moved by " +
                        LengthText(finding.figure) + ": " + MoveText() + ".",
                    "Clamp the sphere, see that the stylus is straight and tight, leave the machine's zero alone, and "
                    "capture both sets again."};
        case FindingKind::Drifts:
            return {"The points drift away during the capture, by " + MoveText() + " in all.",
                    "Wait until the machine is warm and see that sphere and stylus are tight; then capture both sets "
                    "again."};
        case FindingKind::StylusChanged:
            if (finding.detail == 1)
                return {"During the capture the stylus becomes " + LengthText(std::abs(finding.figure)) +
                            (finding.figure > 0.0 ? " longer" : " shorter") + ": it is loose.",
                        "Tighten the stylus, and capture both sets again."};
            return {WhereItChanged() + " the stylus is another one: " + LengthText(std::abs(finding.figure)) +
                        (finding.figure > 0.0 ? " longer." : " shorter."),
                    "Capture both sets again with one stylus."};
        case FindingKind::StylusBent:
            if (finding.detail == 1)
                return {"During the capture the stylus tip moves aside by " + LengthText(finding.figure) +
                            ": the stylus bends or is loose.",
                        "Take a straight stylus, tighten it, and capture both sets again."};
            return {WhereItChanged() + " the stylus tip stands " + LengthText(finding.figure) +
                        " aside of where it stood: the stylus is bent or loose.",
                    "Take a straight stylus, tighten it, and capture both sets again."};
        case FindingKind::PointOff:
        case FindingKind::PointSuspicious:
            return {Points() + " lies " + LengthText(finding.figure) + " off its place.",
                    "Measure the point again, with the head unlocked and in its index position, tip and sphere clean. "
                    "If it is off again, capture both sets again."};
        case FindingKind::PointsContradict:
            return {
                "The points leave the places that their angles give them by " + LengthText(finding.figure) +
                    " (RMS), and no single mistake explains it. Farthest off: " + Points() + ".",
                "See that sphere, stylus and head are tight and that no column is exchanged; then capture both sets "
                "again, with the head unlocked."};
        case FindingKind::AnglesInexact:
            return {
                "The points leave the places that their angles give them by " + LengthText(finding.figure) +
                    " (RMS) more than they scatter. Farthest off: " + Points() + ".",
                "See that the head sits in its index position at every point. If it stays so, have its index positions "
                "looked at."};
        case FindingKind::NumbersTooLarge:
            return {"The numbers are too large to be judged.", "Look at the units and the columns of both files."};
        case FindingKind::AxesParallel:
            return {"The two axes are " + ExactAngle(finding.figure) +
                        " apart; those of a head are square. The head centre is far off.",
                    "Turn A alone for the A set and B alone for the B set, and give each file once."};
        default:
            return MessageOnQuality();
        }
    }

private:
    FindingMessage TooFewPositions() const {
        const auto count = static_cast<int>(finding.figure);
        return {"The points of the " + Set() + " set lie in " +
                    (count == 1 ? std::string("one place or near each other") : std::to_string(count) + " places") +
                    ": they determine no circle, however often each was measured.",
                "Turn " + Set() + " between the points, and capture the " + Set() + " set again: " +
                    (IsOfASet() ? "A = 0, 15, 30, 45, 60, 75, 90." : "B = -180 to 150 in steps of 30.")};
    }
    FindingMessage UnitsWrong() const {
        const std::string unit = finding.reference == 25.4 || finding.reference == 1.0 / 25.4 ? "inches"
                                 : finding.reference >= 1000.0 || finding.reference == 1.0 / 1000.0
                                     ? "metres or micrometres"
                                     : "other units";
        if (finding.detail != 0) {
            return {std::string("The ") + (finding.detail == 1 ? "A" : "B") +
                        " set is in other units than the other one, by a factor of " +
                        text::ExactText(finding.reference) + ".",
                    "Set the machine to millimetres, and capture both sets again."};
        }
        return {"The stylus comes out as " + LengthText(finding.figure) +
                    " long: the points are not in millimetres but in " + unit + ".",
                finding.reference == 25.4
                    ? "Give --units in, or set the machine to millimetres and capture both sets again."
                    : "Set the machine to millimetres, and capture both sets again."};
    }
    FindingMessage TiltReversed() const {
        const std::string remedy =
            "A is 0 with the stylus hanging straight down and grows to 90 as it is tilted: write A so.";
        if (finding.detail == 0) return {Rotations() + ": A counts the wrong way round.", remedy};
        return {std::string("A counts the wrong way round in ") +
                    (finding.detail == 1 ? "the A set, or its lines are in reverse order." : "both sets."),
                remedy};
    }
    static char AxisName(int axis) { return "XYZ"[axis]; }
    FindingMessage Mirrored() const {
        const std::string axis(1, AxisName(finding.detail));
        return {"Machine " + axis + " is mirrored: its values have the other sign" + InSet() + OrIsB() + ".",
                "Look how " + axis +
                    " counts at the machine: X, Y and Z are right-handed, Z up. Capture again with the right sign." +
                    (OrIsB().empty()
                         ? ""
                         : " If Y counts so, B counts the wrong way: it grows from machine X towards machine Y.")};
    }
    FindingMessage Exchanged() const {
        const char* const first = OrIsB().empty() ? "Write "
                                                  : "Look first how B counts: it grows from machine X "
                                                    "towards machine Y. If it does, write ";
        return {std::string("The columns ") + AxisName(finding.detail / 10) + " and " + AxisName(finding.detail % 10) +
                    " are exchanged" + InSet() + OrIsB() + ".",
                std::string(first) + "each coordinate into its own column, with its sign, and capture again where it "
                                     "is not certain which is which."};
    }
    /// In both sets, Y mirrored, or X exchanged with Y, looks the same as B counting in the other direction.
    std::string OrIsB() const {
        return finding.points.empty() && finding.detail == 1 ? ", or B counts the wrong way round" : "";
    }
    std::string InSet() const { return finding.points.empty() ? "" : " in the " + Set() + " set"; }
    std::string WasOrWere() const { return finding.points.size() == 1 ? " was" : " were"; }
    /// Which set was captured first is not known. A change between the sets is reported as one of the B set.
    std::string WhereItChanged() const {
        const bool isWholeSet = finding.points.size() == files.bAxis.items.size() && !IsOfASet();
        return isWholeSet ? "In the B set, compared with the A set," : "From " + First() + " on";
    }
    /// The first of several points.
    std::string First() const { return files.NameOf(finding.points.front()); }
    std::string MoveText() const {
        const auto along = [](const char* axis, double value) {
            return std::string(axis) + " " + (value < 0.0 ? "" : "+") + text::FixedText(value, 3);
        };
        return along("X", finding.vector.x) + ", " + along("Y", finding.vector.y) + ", " +
               along("Z", finding.vector.z) + " mm";
    }

    FindingMessage MessageOnQuality() const {
        switch (finding.kind) {
        case FindingKind::AxesNotSquare:
            return {"The axes are out of square by " + WithDeviation(4, "deg") + ".", MechanicalRemedy()};
        case FindingKind::HeadLeans:
            return {"The B axis leans by " + WithDeviation(4, "deg") +
                        " off machine Z. The component takes it to be "
                        "vertical.",
                    "Mount the head straight, and capture both sets again. A lever is off by 0.8 mm for each degree."};
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
                    "Capture both sets again, the A set at B = 45 with a straight stylus. If it comes again, have the "
                    "head looked at."};
        case FindingKind::CentreDisagrees:
            return {"The component's head centre is " + LengthText(finding.figure) +
                        " away from that of the head fitted with the captured angles.",
                    "Capture both sets again: A from 0 to 90, B all round, at A = 90 or 75."};
        case FindingKind::ComponentDiffers:
            return {"The component computes another head centre from these points than the circles through them, by " +
                        LengthText(finding.figure) + ".",
                    "Run `qmv40 doctor`: another build of the component may be registered."};
        case FindingKind::SphereElsewhere:
            return SphereElsewhere();
        case FindingKind::StylusLengthDiffers:
            return {
                "The stylus comes out as " + LengthText(finding.figure) + " long, and --stylus says " +
                    LengthText(finding.reference) + ".",
                "Measure the stylus from the head's axes to the centre of its ball. If it is as you said, look at the "
                "units, and capture both sets again with the head unlocked and no tip offset in force."};
        case FindingKind::TiltArcShort:
            return {"The A set does not turn far: " + CentreKnown(),
                    "Capture A over its whole range, 0 to 90 in steps of 15."};
        case FindingKind::SwivelArcShort:
            return {"The B set does not turn far: " + CentreKnown(), "Capture B all round the circle."};
        case FindingKind::CentreUncertain:
            return {"The points scatter much: " + CentreKnown(),
                    "Find out why they scatter: a loose stylus or sphere; or capture more points."};
        case FindingKind::RotationUncertain:
            return {"The head's rotation about Z is known to " + ExactAngle(finding.figure) +
                        ", twice its standard deviation, where " + ExactAngle(finding.reference) + " is enough.",
                    "Capture A over its whole range, 0 to 90 in steps of 15, with a longer stylus."};
        case FindingKind::NoiseUneven:
            return {"The points of the A set scatter by " + LengthText(finding.figure) + ", those of the B set by " +
                        LengthText(finding.reference) + ".",
                    "Find out why: a loose stylus, a head that does not sit in its index positions, a dirty sphere."};
        case FindingKind::FewPoints:
            return {"The " + Set() + " set has " + std::to_string(finding.points.size()) +
                        " points: too few to tell from its circle alone whether one of them is off.",
                    "Seven points or more can be judged one by one."};
        default:
            return {};
        }
    }

    // The set of the finding's points: the names of its turned and its held axis
    bool IsOfASet() const { return files.IsOfASet(finding.points.front()); }
    std::string Set() const { return IsOfASet() ? "A" : "B"; }
    std::string Held() const { return IsOfASet() ? "B" : "A"; }
    double Written(const std::string& axis) const {
        const HeadAlignmentDataItem& item = files.ItemOf(finding.points.front());
        return axis == "A" ? item.APosition : item.BPosition;
    }

    /// The angle at which the point was captured, -180 to 180.
    std::string Captured(const std::string& axis) const {
        const double degrees = Written(axis) + finding.figure;
        return RoundAngle(std::abs(degrees) > 180.0 ? std::remainder(degrees, 360.0) : degrees);
    }

    std::string WrongAngle(const std::string& axis) const {
        if (finding.points.size() == 1) {
            return Points() + " was captured at " + axis + " = " + Captured(axis) + ", not at the " +
                   RoundAngle(Written(axis)) + " that is written down.";
        }
        return Points() + " were captured at " + axis + " " + RoundAngle(std::abs(finding.figure)) +
               (finding.figure > 0.0 ? " more" : " less") + " than is written down.";
    }

    FindingMessage WrongSetAngle() const {
        return {
            "The sets do not belong together: the " + Set() + " set was captured at " + Held() + " = " +
                Captured(Held()) + ", not at " + RoundAngle(Written(Held())) + ", or " + Held() +
                " of the other set is wrong throughout.",
            "Look at the notes or at the head, and put the angles right in the file that has them wrong; if in doubt, "
            "capture both sets again."};
    }

    FindingMessage SphereElsewhere() const {
        const std::string where = "The head centre is off the sphere that --sphere gives, by " + MoveText() + ". ";
        if (finding.detail == 1) {
            return {where + "This is what unlocking does to every point: the head was locked all the time.",
                    "Unlock the head, leave it so, and capture both sets again."};
        }
        return {
            where +
                "An offset of the tip was in force, the sphere was moved, or it was measured with a tip that is not "
                "qualified to the machine's zero-length reference.",
            "Switch the tip offset off for the capture, measure the sphere with a qualified tip, and capture both sets "
            "again."};
    }

    /// The points by file and line: the ends of a run, otherwise the first seven points and the last one.
    std::string Points() const {
        const auto& points = finding.points;
        const bool isRun = points.size() > 3 && points.back() - points.front() + 1 == points.size();
        if (isRun && IsOfASet() && !files.IsOfASet(points.back())) {
            return files.NameOf(points.front()) + " to " + files.NameOf(files.aAxis.items.size() - 1) + " and " +
                   files.NameOf(files.aAxis.items.size()) + " to " + files.NameOf(points.back());
        }
        if (isRun) return files.NameOf(points.front()) + " to " + files.NameOf(points.back());
        constexpr std::size_t most = 6;
        std::string text;
        for (const std::size_t point : points) {
            if (point != points.back() && !text.empty() && point > points[std::min(most, points.size() - 1)]) continue;
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
        return finding.severity == diagnosis::Severity::Fault
                   ? "No head is built so: one of the sets is not what it seems. Capture both again."
                   : "Capture both sets again. If it stays so, have the head looked at.";
    }

    const Finding& finding;
    const captures::CaptureFiles& files;
    const model::Vector3& tip;
};

} // namespace

FindingMessage MessageFor(const Finding& finding, const captures::CaptureFiles& files, const model::Vector3& tip) {
    return MessageWriter(finding, files, tip).Message();
}

} // namespace qmv40::report
