#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/cli/Options.h"
#include "tools/plans/PlannedMove.h"

#include <optional>
#include <string>
#include <vector>

namespace qmv40::cli {

/// Which plans a command is about: those that the component makes of --from and --to, or those of a file.
struct PlanSelection {
    GeometryOption geometry;
    std::optional<model::HeadAngles> from;
    std::vector<model::HeadAngles> targets;
    std::string file; ///< empty: the component plans

    bool IsComplete() const { return !file.empty() || (from && !targets.empty()); }
};

/// --geometry, --from, --to and --plan.
void AddPlanSelection(Command& command, PlanSelection& selection);

/// The plans of a selection that is complete. Those of a file are compared with --from and --to where these are given;
/// throws UsageError when the file holds another number of plans.
std::vector<plans::PlanToCheck> SelectedPlans(const PlanSelection& selection);

} // namespace qmv40::cli
