#pragma once

#include "tools/check/CheckedTour.h"
#include "tools/recovery/Recovery.h"

namespace qmv40::recovery {

/// The ways out as plans that were checked, to be looked at: first the rest of the plan, then the way back. A way that
/// is not safe has its finding, one of a stop whose state is unknown there is not.
check::CheckedTour ShownWays(const StoppedPlan& plan, const Question& question, const Recovery& recovery);

} // namespace qmv40::recovery
