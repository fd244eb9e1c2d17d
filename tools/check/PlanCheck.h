#pragma once

#include "tools/check/Clearance.h"
#include "tools/check/Findings.h"

#include <array>
#include <limits>
#include <optional>
#include <vector>

/// Checks a plan: runs its moves on the model (Execution.h) and holds each against what it is for (Contracts.h).

namespace qmv40::check {

struct TravelLimits {
    double smallest = -std::numeric_limits<double>::infinity();
    double largest = std::numeric_limits<double>::infinity();
};

struct CheckOptions {
    BallSizes sizes;
    double smallestRoom = 0.0;          ///< mm; what a move has to leave
    std::array<TravelLimits, 3> travel; ///< of the machine's X, Y, Z
};

struct CheckedMove {
    motion::ExecutedMove run;
    Room room;
    /// How far above the safe height the lowest point is that has to be above it; none where any height is right.
    std::optional<double> aboveSafeHeight;
};

struct PlanReport {
    std::vector<CheckedMove> moves; ///< those that were run: all, unless one has a number that is none
    std::vector<Finding> findings;  ///< in the order of the moves; later ones may follow from the first
    /// How far off the target's engagement position the last indexing arc ends, mm; none when it was not run.
    std::optional<double> targetMiss;
};

PlanReport CheckPlan(const model::HeadModel& head, const CheckOptions& options, const plans::PlanToCheck& plan);

/// The same for a plan that follows another: the machine comes from where that one left it, and the head has to stand
/// where it left it.
PlanReport CheckNextPlan(const model::HeadModel& head, const CheckOptions& options, const plans::PlanToCheck& plan,
                         const PlanReport& before);

} // namespace qmv40::check
