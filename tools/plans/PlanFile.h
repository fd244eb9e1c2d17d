#pragma once

#include "tools/plans/PlannedMove.h"

#include <string>
#include <vector>

namespace qmv40::plans {

/// The plans of a document that `qmv40 move --json` printed, as it is or edited since. Moves keep the order in which
/// they stand there; name and record say what a move does; null is not-a-number. Other members are ignored.
/// Throws InputError for a file that is no such document: a member that is missing, stands twice or is of another type,
/// a move that there is none of.
std::vector<PlanToCheck> ReadPlans(const std::string& fileName);

} // namespace qmv40::plans
