#pragma once

#include "tools/motion/Execution.h"

/// The clearance of a move. Two points are followed, the head's centre and its drive cup. The clearance is the smallest
/// distance on the whole path, in closed form, not at samples.
///
/// To the pole sphere: from either point to the sphere's surface. The cup is left out from EngageWithPeg to
/// DisengageFromPeg, because it must touch the sphere there.
///
/// To the levers: from the machine position to the positions of each lever's ball and centre, minus the radius of a
/// ball. The lever in reach is left out in the four moves in which the machine must touch it.

namespace qmv40::check {

struct BallSizes {
    // A head's geometry has no sizes of sphere and ball. Half of the distance at which an approach ends is assumed: it
    // is 10 mm before the peg and 5 mm before a lever.
    double poleSphereRadius = 5.0; ///< mm
    double leverBallRadius = 2.5;  ///< mm
};

struct Clearance {
    double toPoleSphere; ///< mm; negative: inside
    double toLevers;     ///< mm; negative: inside
};

/// The cup must touch the pole sphere in this move.
bool IsPegContact(plans::MoveId id);
/// The machine must touch the lever in this move.
bool IsLeverContact(plans::MoveId id);

Clearance ClearanceOf(const motion::ExecutedMove& move, const model::HeadModel& head, const BallSizes& sizes);
/// The same at one fraction of the path.
Clearance ClearanceAt(const motion::ExecutedMove& move, double fraction, const model::HeadModel& head,
                      const BallSizes& sizes);

} // namespace qmv40::check
