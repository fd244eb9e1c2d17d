#pragma once

#include "tools/check/CheckedTour.h"
#include "tools/recovery/Recovery.h"

namespace qmv40::recovery {

/// The ways out as checked plans, for viewing: first the rest of the plan, then the way back. A way that is not safe
/// has its finding. When the state is unknown: the plan itself, with the finding that says so.
check::CheckedTour ShownWays(const StoppedPlan& plan, const Question& question, const Recovery& recovery);

} // namespace qmv40::recovery
