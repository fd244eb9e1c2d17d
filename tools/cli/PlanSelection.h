#pragma once

#include "check/PlannedMove.h"
#include "cli/HeadAngles.h"
#include "cli/MoveTable.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

/// Which plans a command is about: those that the component makes of --from and --to, or those of a file.
struct PlanSelection {
    std::string geometry;
    std::optional<HeadAngles> from;
    std::vector<HeadAngles> targets;
    std::string file; ///< empty: the component plans

    bool IsComplete() const { return !file.empty() || (from && !targets.empty()); }
};

/// --geometry, --from, --to and --plan.
void AddPlanSelection(CLI::App& command, PlanSelection& selection);

/// The plans of a selection that is complete. Those of a file are held against --from and --to where these are given;
/// throws UsageError when it holds another number of plans.
std::vector<check::PlanToCheck> SelectedPlans(const PlanSelection& selection);

/// Has the component plan a tour: all plans or none, for a tour that stops half-way is no tour.
std::vector<Plan> PlanTour(const std::string& geometryFile, const HeadAngles& from,
                           const std::vector<HeadAngles>& targets);
