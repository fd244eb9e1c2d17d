#pragma once

#include "tools/check/PlanCheck.h"
#include "tools/cli/CommandLine.h"

namespace qmv40::cli {

/// What a plan is allowed: --sphere-radius, --ball-radius, --clearance and --x-travel, --y-travel, --z-travel.
void AddAllowances(Command& command, check::CheckOptions& options);

} // namespace qmv40::cli
