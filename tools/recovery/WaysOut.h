#pragma once

#include "tools/recovery/Stop.h"
#include "tools/recovery/WayCheck.h"

#include <vector>

/// The moves that lead out of a stopped plan. A way begins on the path that the machine was on: forward on it, or back
/// over the part that was made, which is known to be free. Moves of plans follow. Two exceptions: in the first move the
/// path is not known; and the way back out of `MoveToPegAtSafeZ` or `MoveToLockLeverAtSafeZ` begins at once with a
/// swing about the pole.

namespace qmv40::recovery {

/// The plans of which a way out consists.
struct Plans {
    plans::Plan underWay; ///< from the start to the target
    plans::Plan back;     ///< from the target to the start
    plans::Plan stay;     ///< from the start to the start
};

/// The machine position at the end of the plan.
model::Vector3 EndOf(const plans::Plan& plan);

// Each function returns one way. In the first move it returns several, the best first, because the position at which
// that move began is not known.

/// The rest of the plan. The head ends locked at the target.
std::vector<WayOut> WaysToFinish(const Plans& plans, const Progress& stopped, const Stopped& state, double safeHeight);

/// Back to the start of the plan. The head ends locked there, the machine at the end of the plan from the start to the
/// start. A lever that is pushed part of the way is first pushed to its end: it cannot be pulled back, because the
/// machine touches it on one side.
std::vector<WayOut> WaysBack(const Plans& plans, const Progress& stopped, const Stopped& state, double safeHeight);

} // namespace qmv40::recovery
