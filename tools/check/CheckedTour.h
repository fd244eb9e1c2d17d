#pragma once

#include "tools/check/Figures.h"

#include <vector>

namespace qmv40::check {

/// A plan that was checked, and what was found.
struct CheckedPlan {
    plans::Plan plan;
    PlanReport report;
};

/// Plans that were checked one after the other: each begins where the one before ended.
struct CheckedTour {
    std::vector<CheckedPlan> plans;
    Figures figures;

    std::size_t Findings() const;
};

CheckedTour CheckTour(std::vector<plans::Plan> plans, const model::HeadModel& head, const CheckOptions& options);

} // namespace qmv40::check
