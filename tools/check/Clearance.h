#pragma once

#include "tools/motion/Execution.h"

/// How much clearance a move leaves. Two points of the head are followed, its centre and its drive cup, and the
/// smallest distance of their whole way counts, not that of sampled points.
///
/// To the pole sphere: from either point to the sphere's surface. The cup is left out while it goes onto the peg, is on
/// it and comes off it (EngageWithPeg to DisengageFromPeg): there it must touch.
/// To a lever: from the machine's position to the position at which it would stand in the middle of the lever's ball,
/// or of its hub, less the ball's radius; for both levers, as they are before the move. The lever that is being worked
/// is left out from touching it until it is pushed through (EngageWith... and UnLock, Lock): there it must touch.

namespace qmv40::check {

struct BallSizes {
    // No dimension of sphere and ball is part of a head's geometry. Half of the distance from which peg and lever are
    // approached (10 and 5 mm) is a size that such an approach plainly allows for.
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
/// The same at one place of the move's way.
Clearance ClearanceAt(const motion::ExecutedMove& move, double fraction, const model::HeadModel& head,
                      const BallSizes& sizes);

} // namespace qmv40::check
