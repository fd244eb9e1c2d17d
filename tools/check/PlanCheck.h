#pragma once

#include "tools/check/Clearance.h"
#include "tools/check/Findings.h"
#include "tools/check/Surroundings.h"

#include <array>
#include <limits>
#include <optional>
#include <vector>

/// Checks a plan: runs its moves on the model (Execution.h) and holds each against what it is for (MoveRequirements.h).

namespace qmv40::check {

struct TravelLimits {
    double smallest = -std::numeric_limits<double>::infinity();
    double largest = std::numeric_limits<double>::infinity();
};

struct CheckOptions {
    BallSizes sizes;
    double requiredClearance = 0.0;     ///< mm; that every move must have
    std::array<TravelLimits, 3> travel; ///< of the machine's X, Y, Z
    Scene scene;
};

struct CheckedMove {
    motion::ExecutedMove run;
    Clearance clearance;
    PartClearances around;           ///< of every part of the head to all that stands around
    std::optional<double> lowestTip; ///< Z of the lowest point of the stylus' tip, mm; none without a stylus
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
/// Many plans of one head are checked faster with one object for what stands around: it knows the moves that it has
/// met.
PlanReport CheckPlan(const model::HeadModel& head, const CheckOptions& options, const plans::PlanToCheck& plan,
                     Surroundings& surroundings);

/// The same for a plan that follows another: the machine comes from where that one left it, and the head has to stand
/// where it left it.
PlanReport CheckNextPlan(const model::HeadModel& head, const CheckOptions& options, const plans::PlanToCheck& plan,
                         const PlanReport& before, Surroundings& surroundings);

/// The same for moves that begin in the middle of a plan, with the head in `state` and the machine at `machineAt`. They
/// are held against what each is for and against the end that `plan.to` names, but not against the list of all moves.
PlanReport CheckRest(const model::HeadModel& head, const CheckOptions& options, const plans::PlanToCheck& plan,
                     const motion::HeadState& state, const model::Vector3& machineAt);

} // namespace qmv40::check
