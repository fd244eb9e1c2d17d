#include "tools/diagnosis/Finding.h"

namespace qmv40::diagnosis {

std::string_view NameOf(FindingKind kind) {
    switch (kind) {
    case FindingKind::TooFewPositions:
        return "too-few-positions";
    case FindingKind::CircleTooSmall:
        return "circle-too-small";
    case FindingKind::TipInForce:
        return "tip-in-force";
    case FindingKind::UnitsWrong:
        return "units-wrong";
    case FindingKind::SetsExchanged:
        return "sets-exchanged";
    case FindingKind::OtherAxisNotHeld:
        return "other-axis-not-held";
    case FindingKind::SwivelReversed:
        return "swivel-reversed";
    case FindingKind::TiltReversed:
        return "tilt-reversed";
    case FindingKind::AxisMirrored:
        return "axis-mirrored";
    case FindingKind::AxesExchanged:
        return "axes-exchanged";
    case FindingKind::ArmHorizontal:
        return "arm-horizontal";
    case FindingKind::AnglesSwapped:
        return "angles-swapped";
    case FindingKind::AngleMistyped:
        return "angle-mistyped";
    case FindingKind::OtherAxisMoved:
        return "other-axis-moved";
    case FindingKind::SetAngleWrong:
        return "set-angle-wrong";
    case FindingKind::CapturedLocked:
        return "captured-locked";
    case FindingKind::TurnedOnMount:
        return "turned-on-mount";
    case FindingKind::HeadTilted:
        return "head-tilted";
    case FindingKind::SphereMoved:
        return "sphere-moved";
    case FindingKind::SetsApart:
        return "sets-apart";
    case FindingKind::Drifts:
        return "drifts";
    case FindingKind::StylusChanged:
        return "stylus-changed";
    case FindingKind::StylusBent:
        return "stylus-bent";
    case FindingKind::PointOff:
        return "point-off";
    case FindingKind::PointSuspicious:
        return "point-suspicious";
    case FindingKind::PointsContradict:
        return "points-contradict";
    case FindingKind::AnglesInexact:
        return "angles-inexact";
    case FindingKind::NumbersTooLarge:
        return "numbers-too-large";
    case FindingKind::AxesParallel:
        return "axes-parallel";
    case FindingKind::AxesNotSquare:
        return "axes-not-square";
    case FindingKind::HeadLeans:
        return "head-leans";
    case FindingKind::AxesApart:
        return "axes-apart";
    case FindingKind::RotationOnWrongSide:
        return "rotation-on-wrong-side";
    case FindingKind::TipOffAxis:
        return "tip-off-axis";
    case FindingKind::RotationDisagrees:
        return "rotation-disagrees";
    case FindingKind::CentreDisagrees:
        return "centre-disagrees";
    case FindingKind::ComponentDiffers:
        return "component-differs";
    case FindingKind::SphereElsewhere:
        return "sphere-elsewhere";
    case FindingKind::StylusLengthDiffers:
        return "stylus-length-differs";
    case FindingKind::TiltArcShort:
        return "tilt-arc-short";
    case FindingKind::SwivelArcShort:
        return "swivel-arc-short";
    case FindingKind::CentreUncertain:
        return "centre-uncertain";
    case FindingKind::NoiseUneven:
        return "noise-uneven";
    case FindingKind::FewPoints:
        return "few-points";
    }
    return "";
}

std::string_view NameOf(Severity severity) {
    switch (severity) {
    case Severity::Note:
        return "note";
    case Severity::Warning:
        return "warning";
    case Severity::Fault:
        return "fault";
    }
    return "";
}

} // namespace qmv40::diagnosis
