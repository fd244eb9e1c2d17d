#pragma once

#include "tools/model/Vector3.h"
#include "tools/text/Finding.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace qmv40::diagnosis {

using text::Severity; // a fault: the geometry is wrong, or nothing shows that it is right

/// What may be found in a capture. `figure`, `reference`, `vector` and `detail` of a finding mean what stands beside
/// each kind; lengths in millimetres, angles in degrees.
enum class FindingKind {
    TooFewPositions, ///< a set has too few different positions; figure: how many
    CircleTooSmall,  ///< the circle of a set is too small to have an axis; figure: its radius
    TipInForce,      ///< the points lie where the sphere is: an offset of the tip was in force; detail 1: in one set
    UnitsWrong,    ///< figure: the stylus length that comes out; reference: the factor that would make it millimetres;
                   ///< detail 1: in one set alone
    SetsExchanged, ///< what was given as the A set is the B set and the other way round
    OtherAxisNotHeld, ///< these points' angle that was to be held is not that of the others; figure: theirs
    SwivelReversed,   ///< B counts the wrong way round; figure 0: in both sets, 1: in the B set alone
    TiltReversed,     ///< A counts the wrong way round; figure: the component's rotation, reference: the fitted one
    AxisMirrored,     ///< a coordinate has the other sign; detail: which, 0 is X
    AxesExchanged,    ///< two coordinates are exchanged; detail: 10 times the one and the other
    ArmHorizontal,    ///< the head hangs from a horizontal arm, or all three coordinates are exchanged
    AnglesSwapped,    ///< two points of a set have each other's turning angle
    AngleMistyped,    ///< the turning angle of the points is written wrong; figure: by how much more it was,
                      ///< reference: by how much that moves the points
    OtherAxisMoved,   ///< the angle held in the points' set was another; the same figures
    SetAngleWrong,    ///< the angle held in a set does not go with the other set; the same figures
    CapturedLocked,   ///< the points were captured with the head locked; figure: by how much that moves them
    TurnedOnMount,    ///< from these points on the head stands turned about its B axis; figure: by how much
    HeadTilted,       ///< from these points on the head is tilted; figure: by how much
    SphereMoved,      ///< from these points on the pole sphere or the machine's zero is elsewhere; vector: by how much
    SetsApart,        ///< the same, between the sets
    Drifts,           ///< the points drift away; vector: by how much in all
    StylusChanged,    ///< from these points on the stylus is another one; figure: by how much it is longer
    StylusBent,       ///< from these points on its tip stands elsewhere; figure: how far aside
    PointOff,         ///< the point is off its place; figure: how far
    PointSuspicious,  ///< the same, but not by so much that it must be a mistake
    PointsContradict, ///< points leave their places and no mistake of these explains it; figure: RMS
    AnglesInexact,    ///< points leave their places a little more than noise does; figure: RMS of what is too much
    NumbersTooLarge,  ///< the numbers are so large that nothing can be judged
    AxesParallel,     ///< figure: angle between the axes
    AxesNotSquare,    ///< figure: angle off 90, reference: its standard deviation
    HeadLeans,        ///< figure: angle of the B axis off the vertical, reference: its standard deviation
    AxesApart,        ///< figure: the distance between the axes, reference: its standard deviation
    RotationOnWrongSide, ///< figure: the component's rotation, reference: the fitted one
    TipOffAxis,          ///< the same because of the stylus
    RotationDisagrees,   ///< the same for no reason known
    CentreDisagrees,     ///< figure: how far the component's head centre is from the fitted one, reference: standard
                         ///< deviation
    ComponentDiffers,    ///< the component computes another centre from the same points than the diagnosis; figure: how
                         ///< far
    SphereElsewhere,     ///< the head centre is not where the sphere was measured; vector: the difference
    StylusLengthDiffers, ///< figure: the stylus length that comes out, reference: the one that is known
    TiltArcShort,        ///< figure: twice the standard deviation of the head centre, reference: what was asked for
    SwivelArcShort,      ///< the same
    CentreUncertain,     ///< the same because of the noise
    NoiseUneven,         ///< figure: the noise of the A set, reference: of the B set
    FewPoints            ///< the circle of a set is fitted to so few points that none can be told from the others
};

struct Finding {
    FindingKind kind;
    Severity severity;
    std::vector<std::size_t> points; ///< the ones it speaks of, counted through both sets
    double figure = 0.0;
    double reference = 0.0;
    std::optional<double> captureAt = std::nullopt; ///< B at which the A set had better be captured
    model::Vector3 vector = {};
    int detail = 0;
};

/// The name under which a kind of finding is known to scripts: it never changes.
std::string_view NameOf(FindingKind kind);

} // namespace qmv40::diagnosis
