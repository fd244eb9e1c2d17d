#pragma once

#include "tools/check/PlanCheck.h"

/// The worst figures over any number of plans, and where each was found.

namespace qmv40::check {

struct WorstFigure {
    double value;
    std::size_t plan; ///< counted from 0, in the order in which the plans were taken
    model::HeadAngles from;
    model::HeadAngles to;
    std::size_t move; ///< index among the moves of the plan
    plans::MoveId id;
};

class Figures {
public:
    void Take(const plans::PlanToCheck& plan, const PlanReport& report);

    std::size_t Plans() const { return plans; }
    // None before a move was run that has one. The first plan wins a tie.
    std::optional<WorstFigure> roomToPoleSphere; ///< mm, the smallest
    std::optional<WorstFigure> roomToLevers;     ///< mm, the smallest
    std::optional<WorstFigure> aboveSafeHeight;  ///< mm, the smallest
    std::optional<WorstFigure> targetMiss;       ///< mm, the largest
    std::optional<WorstFigure> pulledOff;        ///< mm, the largest

private:
    std::size_t plans = 0;
};

} // namespace qmv40::check
