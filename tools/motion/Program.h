#pragma once

#include "tools/model/Path.h"
#include "tools/plans/PlannedMove.h"

#include <optional>
#include <span>
#include <vector>

namespace qmv40::motion {

/// One step of what a machine does in a tour: a move of a plan, or a part of the way to where a plan begins.
struct Step {
    std::size_t plan;                  ///< counted from 1
    std::optional<plans::MoveId> move; ///< none: on the way to the plan's first move
    model::Path path;
    bool isStartKnown = true; ///< false: the machine comes from wherever it stands, and the path is its end alone
};

struct ProgramOptions {
    double safeHeight; ///< Z at which the machine moves freely; before the program is lifted
    double lift = 0.0; ///< mm; the whole program is made this much higher
    /// Begin above the first plan's start, at the safe height, and come down from there.
    bool approachesFromAbove = false;
};

/// The plans one after the other, with the way between them at the safe height: up, across, down. Throws InputError
/// for a plan that begins with an arc or has a number that is none: nobody can say where it leads.
std::vector<Step> ProgramOf(std::span<const plans::PlanToCheck> plans, const ProgramOptions& options);

/// mm, from the first known position on.
double LengthOf(std::span<const Step> program);

} // namespace qmv40::motion
