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
    std::vector<model::HeadAngles> targets; ///< of --to, then of --tour
    std::string tour;                       ///< a file of positions; read by SelectedPlans
    std::string file;                       ///< empty: the component plans

    bool IsComplete() const { return !file.empty() || !tour.empty() || (from && !targets.empty()); }
};

/// Throws UsageError when the command does not know which plans are meant.
void RequireComplete(const PlanSelection& selection, const std::string& command);

/// --from, --to and --tour, for the positions that plans go through.
void AddPositions(Command& command, PlanSelection& selection);
/// --geometry, --from, --to, --tour and --plan.
void AddPlanSelection(Command& command, PlanSelection& selection);

/// The positions that the plans go through, the first where the head stands: of --from and --to, then of --tour. A tour
/// without --from begins at its first row. Throws UsageError where there are fewer than two.
std::vector<model::HeadAngles> SelectedPositions(const PlanSelection& selection);

/// The plans of a selection that is complete. Those of a file are compared with --from and --to where these are given;
/// throws UsageError when the file holds another number of plans.
std::vector<plans::PlanToCheck> SelectedPlans(const PlanSelection& selection);

} // namespace qmv40::cli
