#pragma once

#include "tools/plans/PlannedMove.h"

#include <string>
#include <vector>

namespace qmv40::plans {

/// The plans of a document that `qmv40 move --json` printed; it may have been edited. Moves keep their order in the
/// document. Name and record say what a move does; null means not-a-number. Other members are ignored. Throws
/// InputError for a file that is no such document: a member is missing, occurs twice or has another type, or the name
/// of a move is unknown.
std::vector<Plan> ReadPlans(const std::string& fileName);

} // namespace qmv40::plans
