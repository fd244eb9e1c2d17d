#pragma once

#include "tools/check/PlanCheck.h"

#include <vector>

namespace qmv40::check {

/// A worst figure, and where it was found.
struct WorstFigure {
    double value;
    std::size_t plan; ///< counted from 0, in the order in which the plans were taken
    model::HeadAngles from;
    model::HeadAngles to;
    std::size_t move; ///< index among the moves of the plan
    plans::MoveId id;
};

/// The smallest clearance of one part of the head to one obstacle.
struct PairFigure {
    std::string part;
    std::string solid;
    std::optional<WorstFigure> smallest; ///< empty when the two are not compared
};

/// The worst figures of any number of plans.
class Figures {
public:
    /// Without figures of parts and obstacles.
    Figures() = default;
    explicit Figures(const Surroundings& surroundings);

    void Take(const plans::Plan& plan, const PlanReport& report);

    std::size_t Plans() const { return plans; }
    // Empty until a move was run that has one. Of equal figures the first counts.
    std::optional<WorstFigure> clearanceToPoleSphere; ///< mm, the smallest
    std::optional<WorstFigure> clearanceToLevers;     ///< mm, the smallest
    std::optional<WorstFigure> aboveSafeHeight;       ///< mm, the smallest
    std::optional<WorstFigure> lowestTip;             ///< Z, mm, the smallest
    std::optional<WorstFigure> targetMiss;            ///< mm, the largest
    std::optional<WorstFigure> pulledOff;             ///< mm, the largest

    const std::vector<PairFigure>& Pairs() const { return pairs; }
    const PairFigure& PairOf(const PartClearance& each) const { return pairs[each.part * solids + each.solid]; }
    /// The largest radius of the pole sphere, mm, at which the smallest clearance to it is still the required one.
    std::optional<double> LargestSphere(const CheckOptions& options) const;

private:
    std::vector<PairFigure> pairs; ///< by part, then by solid
    std::size_t solids = 0;
    std::size_t plans = 0;
};

/// A plan that was checked, and what was found.
struct CheckedPlan {
    plans::Plan plan;
    PlanReport report;
};

/// Plans that were checked one after the other: each has to begin where the one before ended. For viewing, also the two
/// ways out of a stopped plan, which begin at one place.
struct CheckedTour {
    std::vector<CheckedPlan> plans;
    Figures figures;

    std::size_t Findings() const;
};

CheckedTour CheckTour(std::vector<plans::Plan> plans, const model::HeadModel& head, const CheckOptions& options);

} // namespace qmv40::check
