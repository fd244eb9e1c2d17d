#pragma once

#include "tools/model/Vector3.h"
#include "tools/text/Finding.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace qmv40::diagnosis {

using text::Severity; // a fault: the geometry is wrong, or its correctness cannot be shown

/// The possible findings. The comments say what `figure`, `reference`, `vector` and `detail` of a finding are; lengths
/// are in millimetres, angles in degrees.
enum class FindingKind {
    TooFewPositions, ///< a set has too few different positions; figure: how many
    CircleTooSmall,  ///< the circle of a set is too small to have an axis; figure: its radius, or the median distance
                     ///< of the points from their centre
    TipInForce,      ///< the points are where the sphere is: a tip offset was in force; detail 1: in one set
    UnitsWrong, ///< figure: the fitted stylus length; reference: the factor that gives millimetres, or the unit of the
                ///< other set; detail 0: in both sets, 1: in the A set only, 2: in the B set only
    SetsExchanged,    ///< the A set was given as the B set, and the B set as the A set
    OtherAxisNotHeld, ///< the held angle of these points differs from that of the others; figure: that of the others
    SwivelReversed,   ///< B counts in the wrong direction; figure 0: in both sets, 1: in the B set only
    TiltReversed,   ///< A counts in the wrong direction; detail 0: figure is the component's rotation and reference the
                    ///< fitted one; detail 1: in the A set only, 2: in both sets
    AxisMirrored,   ///< a coordinate has the wrong sign; detail: its number, 0 is X
    AxesExchanged,  ///< two coordinates are exchanged; detail: 10 times the one plus the other
    ArmHorizontal,  ///< the head hangs from a horizontal arm or points up, or coordinates are in the wrong columns
    AnglesSwapped,  ///< two points of a set have each other's turning angle
    AngleMistyped,  ///< the turning angle of the points is wrong; figure: the true angle minus the written one,
                    ///< reference: how far that moves the points
    OtherAxisMoved, ///< the held angle of the points is wrong; figures as above
    SetAngleWrong,  ///< the held angle of a set contradicts the other set; figures as above
    CapturedLocked, ///< the points were captured with the head locked; figure: how far that moves them
    // Of the next four, detail is 1 when it happens little by little during the whole capture
    TurnedOnMount,       ///< from these points on, the head is turned on its mount; figure: by how much
    HeadTilted,          ///< from these points on, the head is tilted; figure: by how much
    StylusChanged,       ///< from these points on, the stylus is another one; figure: by how much it is longer
    StylusBent,          ///< from these points on, its tip is elsewhere; figure: how far
    SphereMoved,         ///< from these points on, the pole sphere or the machine's zero has moved; vector: how far
    SetsApart,           ///< the same, between the sets; figure: the length of the vector
    Drifts,              ///< the points drift; vector: from the first to the last point
    PointOff,            ///< the point is off its place; figure: how far
    PointSuspicious,     ///< the same, but less than a mistake would cause
    PointsContradict,    ///< points are off their places, and no known mistake explains it; figure: RMS
    AnglesInexact,       ///< points are slightly farther off than noise explains; figure: RMS of the excess
    NumbersTooLarge,     ///< the numbers are too large to be judged
    AxesParallel,        ///< figure: angle between the axes
    AxesNotSquare,       ///< figure: squareness, reference: its standard deviation
    HeadLeans,           ///< figure: tilt of the B axis from the vertical, reference: its standard deviation
    AxesApart,           ///< figure: axis offset, reference: its standard deviation
    RotationOnWrongSide, ///< figure: the component's rotation, reference: the fitted one
    TipOffAxis,          ///< the same because of the stylus
    RotationDisagrees,   ///< the same without a known reason
    CentreDisagrees,     ///< figure: distance of the component's head centre from the fitted one, reference: the
                         ///< standard deviation of its part along one axis
    ComponentDiffers,    ///< component and diagnosis compute different centres of the same points; figure: their
                         ///< distance
    SphereElsewhere,     ///< the head centre is not where the sphere was measured; vector: the difference
    StylusLengthDiffers, ///< figure: the fitted stylus length, reference: the known one
    TiltArcShort,        ///< figure: twice the standard deviation of the head centre, reference: the limit
    SwivelArcShort,      ///< the same
    CentreUncertain,     ///< the same because of the noise
    RotationUncertain,   ///< figure: twice the standard deviation of the rotation, reference: what it should be
    NoiseUneven,         ///< figure: the noise of the A set, reference: of the B set
    FewPoints            ///< a set has too few points for a wrong one to be recognised
};

struct Finding {
    FindingKind kind;
    Severity severity;
    std::vector<std::size_t> points; ///< the points concerned, numbered through both sets
    double figure = 0.0;
    double reference = 0.0;
    std::optional<double> captureAt = std::nullopt; ///< B at which the A set should be captured
    model::Vector3 vector = {};
    int detail = 0;
};

/// The name of a kind of finding in documents. It never changes.
std::string_view NameOf(FindingKind kind);

/// True when a finding has this severity.
bool Has(std::span<const Finding> findings, Severity severity);

} // namespace qmv40::diagnosis
