#pragma once

#include "tools/cli/CommandLine.h"
#include "tools/cli/Options.h"
#include "tools/plans/PlannedMove.h"

#include <optional>
#include <string>
#include <vector>

namespace qmv40::cli {

/// The plans that a command is about: those that the component makes for --from and --to, or those of a file.
struct PlanSelection {
    GeometryOption geometry;
    std::optional<model::HeadAngles> from;
    std::vector<model::HeadAngles> targets; ///< of --to
    std::string tour;                       ///< a file of positions; read by SelectedPositions
    std::string file;                       ///< empty: the component plans

    bool IsComplete() const { return !file.empty() || !tour.empty() || (from && !targets.empty()); }
};

/// Throws UsageError when the options do not say which plans are meant.
void RequireComplete(const PlanSelection& selection, const std::string& command);

/// Adds --from, --to and --tour, for the positions that plans lead through.
void AddPositions(Command& command, PlanSelection& selection);
/// Adds --geometry, --from, --to, --tour and --plan.
void AddPlanSelection(Command& command, PlanSelection& selection);

/// The positions that the plans lead through; the head is at the first one. First those of --from and --to, then
/// those of --tour. A tour without --from begins at its first row. Throws UsageError when there are fewer than two.
std::vector<model::HeadAngles> SelectedPositions(const PlanSelection& selection);

/// The plans of a complete selection. In plans of a file, --from and --to replace the start and the targets when they
/// are given. Throws UsageError when the file has another number of plans than --to was given.
std::vector<plans::Plan> SelectedPlans(const PlanSelection& selection);

} // namespace qmv40::cli
