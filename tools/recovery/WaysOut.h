#pragma once

#include "tools/recovery/Stop.h"
#include "tools/recovery/WayCheck.h"

#include <vector>

/// The moves that lead out of a stopped plan. Each begins by going on along the path that the machine was on, or back
/// along the part of it that was made: that path is known to be free. After it the moves are those of plans.

namespace qmv40::recovery {

/// The plans that a way out is put together from.
struct Plans {
    plans::PlanToCheck underWay; ///< from the start to the target
    plans::PlanToCheck back;     ///< from the target to the start
    plans::PlanToCheck stay;     ///< from the start to the start
};

/// Where the plan leaves the machine.
model::Vector3 EndOf(const plans::PlanToCheck& plan);

// Several ways, the best first, where where the machine came from is not known: before the first move ends.

/// The rest of the plan: the head ends locked at the target.
std::vector<WayOut> WaysToFinish(const Plans& plans, const Progress& stopped, const Stopped& state, double safeHeight);

/// Back to where the plan began: the head ends locked there, the machine where the plan from the start to the start
/// ends. A lever that is pushed part of the way is pushed on first, never pulled: the machine touches it on one side.
std::vector<WayOut> WaysBack(const Plans& plans, const Progress& stopped, const Stopped& state, double safeHeight);

} // namespace qmv40::recovery
