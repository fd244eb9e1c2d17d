#pragma once

#include "tools/check/Clearance.h"
#include "tools/check/Findings.h"
#include "tools/check/Surroundings.h"

#include <array>
#include <limits>
#include <optional>
#include <vector>

/// Checks a plan: runs its moves on the model (Execution.h) and compares each with its purpose (MoveRequirements.h).

namespace qmv40::check {

struct TravelLimits {
    double smallest = -std::numeric_limits<double>::infinity();
    double largest = std::numeric_limits<double>::infinity();
};

struct CheckOptions {
    BallSizes sizes;
    double requiredClearance = 0.0;     ///< mm; of every move
    std::array<TravelLimits, 3> travel; ///< of the machine's X, Y, Z
    Scene scene;
};

/// What comes closer than the required clearance. These findings and the next ones do not have the move's index.
std::vector<Finding> FindingsOfClearance(const Clearance& clearance, const PartClearances& around,
                                         const CheckOptions& options, const Surroundings& surroundings);
/// One finding for each machine axis whose travel the path exceeds.
std::vector<Finding> FindingsOfTravel(const model::Path& path, const CheckOptions& options);
/// How far angles are beyond the head's stops (A 0 to 90, B -180 to 180): degrees, negative inside.
double BeyondStops(const model::HeadAngles& angles);
/// The larger one of the differences in A and in B, degrees.
double LargestDifference(const model::HeadAngles& left, const model::HeadAngles& right);

struct CheckedMove {
    motion::ExecutedMove run;
    Clearance clearance;
    PartClearances around;           ///< of the parts of the head to the obstacles: see Surroundings::Of
    std::optional<double> lowestTip; ///< Z of the stylus tip's lowest point, mm; empty without a stylus
    /// Height above the safe height, mm: of the lowest point of a move that must stay above it, of the end of a move
    /// that must only end above it; empty for all others.
    std::optional<double> aboveSafeHeight;
};

CheckedMove CheckedMoveOf(const motion::ExecutedMove& run, const model::HeadModel& head, const CheckOptions& options,
                          Surroundings& surroundings);

struct PlanReport {
    /// Those that were run: all, unless one cannot be run (Machine::CanRun). The way from the plan before counts as a
    /// part of the first one.
    std::vector<CheckedMove> moves;
    std::vector<motion::ExecutedMove> way; ///< from the end of the plan before to the start of the first move
    /// First about the plan's start and the order of its moves, then move by move, at last about the end. Later ones
    /// may follow from earlier ones.
    std::vector<Finding> findings;
    /// Distance, mm, of the last indexing arc's end from the engagement position of the target; empty when it was not
    /// run.
    std::optional<double> targetMiss;
};

/// For many plans of one head, use one Surroundings object for all: it remembers the moves that it has computed.
/// `before`: the plan before this one, if there is one. The machine then comes from where that plan left it, at the
/// safe height, and the plan must begin with the head as that plan left it.
PlanReport CheckPlan(const model::HeadModel& head, const CheckOptions& options, const plans::Plan& plan,
                     Surroundings& surroundings, const PlanReport* before = nullptr);

} // namespace qmv40::check
