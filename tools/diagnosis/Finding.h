#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace qmv40::diagnosis {

enum class Severity {
    Note,    ///< what cannot be judged
    Warning, ///< the geometry is right as far as it goes, but not as good as it should be
    Fault    ///< the capture contradicts itself: the geometry is wrong
};

/// What may be found in a capture. `figure` and `reference` of a finding mean what stands beside each kind; lengths in
/// the unit of the points, angles in degrees.
enum class FindingKind {
    SetsExchanged,       ///< what was given as the A set is the B set and the other way round
    OtherAxisNotHeld,    ///< these points' angle that was to be held is not that of the others; figure: theirs
    SwivelReversed,      ///< B counts the wrong way round; figure 0: in both sets, 1: in the B set alone
    TiltReversed,        ///< A counts the wrong way round; figure: the component's rotation, reference: the fitted one
    AnglesSwapped,       ///< two points of a set have each other's turning angle
    AngleMistyped,       ///< the turning angle of the points is written wrong; figure: by how much more it was,
                         ///< reference: by how much that moves the points
    OtherAxisMoved,      ///< the angle held in the points' set was another; the same figures
    SetAngleWrong,       ///< the angle held in a set does not go with the other set; the same figures
    PointOff,            ///< the point is off its place; figure: how far
    PointSuspicious,     ///< the same, but not by so much that it must be a mistake
    SetsApart,           ///< the pole or the head moved between the sets; figure: how far
    PointsContradict,    ///< points leave their places and no mistake of these explains it; figure: RMS
    AnglesInexact,       ///< points leave their places a little more than noise does; figure: RMS of what is too much
    AxesParallel,        ///< figure: angle between the axes
    AxesNotSquare,       ///< figure: angle off 90, reference: its standard deviation
    HeadLeans,           ///< figure: angle of the B axis off the vertical, reference: its standard deviation
    AxesApart,           ///< figure: the gap between the axes, reference: its standard deviation
    RotationOnWrongSide, ///< figure: the component's rotation, reference: the fitted one
    TipOffAxis,          ///< the same because of the stylus
    RotationDisagrees,   ///< the same for no reason known
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
    std::optional<double> captureAt; ///< B at which the A set had better be captured
};

/// The name under which a kind of finding is known to scripts: it never changes.
std::string_view NameOf(FindingKind kind);
std::string_view NameOf(Severity severity);

} // namespace qmv40::diagnosis
