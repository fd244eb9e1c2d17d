#include "tools/diagnosis/Finding.h"

#include <algorithm>
#include <iterator>

namespace qmv40::diagnosis {

namespace {

using enum FindingKind;

struct KindName {
    FindingKind kind;
    std::string_view name;
};

constexpr KindName names[] = {{TooFewPositions, "too-few-positions"},
                              {CircleTooSmall, "circle-too-small"},
                              {TipInForce, "tip-in-force"},
                              {UnitsWrong, "units-wrong"},
                              {SetsExchanged, "sets-exchanged"},
                              {OtherAxisNotHeld, "other-axis-not-held"},
                              {SwivelReversed, "swivel-reversed"},
                              {TiltReversed, "tilt-reversed"},
                              {AxisMirrored, "axis-mirrored"},
                              {AxesExchanged, "axes-exchanged"},
                              {ArmHorizontal, "arm-horizontal"},
                              {AnglesSwapped, "angles-swapped"},
                              {AngleMistyped, "angle-mistyped"},
                              {OtherAxisMoved, "other-axis-moved"},
                              {SetAngleWrong, "set-angle-wrong"},
                              {CapturedLocked, "captured-locked"},
                              {TurnedOnMount, "turned-on-mount"},
                              {HeadTilted, "head-tilted"},
                              {StylusChanged, "stylus-changed"},
                              {StylusBent, "stylus-bent"},
                              {SphereMoved, "sphere-moved"},
                              {SetsApart, "sets-apart"},
                              {Drifts, "drifts"},
                              {PointOff, "point-off"},
                              {PointSuspicious, "point-suspicious"},
                              {PointsContradict, "points-contradict"},
                              {AnglesInexact, "angles-inexact"},
                              {NumbersTooLarge, "numbers-too-large"},
                              {AxesParallel, "axes-parallel"},
                              {AxesNotSquare, "axes-not-square"},
                              {HeadLeans, "head-leans"},
                              {AxesApart, "axes-apart"},
                              {RotationOnWrongSide, "rotation-on-wrong-side"},
                              {TipOffAxis, "tip-off-axis"},
                              {RotationDisagrees, "rotation-disagrees"},
                              {CentreDisagrees, "centre-disagrees"},
                              {ComponentDiffers, "component-differs"},
                              {SphereElsewhere, "sphere-elsewhere"},
                              {StylusLengthDiffers, "stylus-length-differs"},
                              {TiltArcShort, "tilt-arc-short"},
                              {SwivelArcShort, "swivel-arc-short"},
                              {CentreUncertain, "centre-uncertain"},
                              {RotationUncertain, "rotation-uncertain"},
                              {NoiseUneven, "noise-uneven"},
                              {FewPoints, "few-points"}};

constexpr bool AreInTheOrderOfKinds() {
    for (std::size_t i = 0; i < std::size(names); ++i) {
        if (names[i].kind != static_cast<FindingKind>(i)) return false;
    }
    return std::size(names) == static_cast<std::size_t>(FewPoints) + 1;
}
static_assert(AreInTheOrderOfKinds());

} // namespace

std::string_view NameOf(FindingKind kind) { return names[static_cast<std::size_t>(kind)].name; }

bool Has(std::span<const Finding> findings, Severity severity) {
    return std::ranges::find(findings, severity, &Finding::severity) != findings.end();
}

} // namespace qmv40::diagnosis
