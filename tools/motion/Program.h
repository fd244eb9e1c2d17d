#pragma once

#include "tools/model/Path.h"
#include "tools/plans/PlannedMove.h"

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace qmv40::motion {

/// One step of a tour: a move of a plan, or a part of the way to the start of a plan.
struct Step {
    std::size_t plan;                  ///< counted from 1
    std::optional<plans::MoveId> move; ///< empty: on the way to the plan's first move
    model::Path path;                  ///< of length 0, at its end, when the machine position before it is not known
};

struct ProgramOptions {
    double safeHeight; ///< Z at which the machine moves freely, without `lift`
    double lift = 0.0; ///< mm; added to every Z of the program
    /// Begin above the start of the first plan, at the safe height, and come down from there.
    bool approachesFromAbove = false;
};

/// The plans one after the other. Between them the machine moves at the safe height: up, across, down. Throws
/// InputError for a plan that begins with an arc, or has a number that is not finite: where it leads is unknown.
std::vector<Step> ProgramOf(std::span<const plans::Plan> plans, const ProgramOptions& options);

/// The corners of the way from the end of a plan to the start of the next one: up to `safeHeight`, and across to above
/// the start.
std::array<model::Vector3, 2> CornersOfWay(const model::Vector3& end, const model::Vector3& start, double safeHeight);

/// The length of the path in mm, from the first known position.
double LengthOf(std::span<const Step> program);

} // namespace qmv40::motion
