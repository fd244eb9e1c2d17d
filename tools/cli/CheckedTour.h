#pragma once

#include "check/Figures.h"

#include <string>
#include <vector>

/// A plan that was checked, and what was found.
struct CheckedPlan {
    check::PlanToCheck plan;
    check::PlanReport report;
};

/// Plans that were checked one after the other: each begins where the machine stands after the one before.
struct CheckedTour {
    std::vector<CheckedPlan> plans;
    check::Figures figures;

    std::size_t Findings() const;
};

CheckedTour CheckTour(std::vector<check::PlanToCheck> plans, const check::HeadModel& head,
                      const check::CheckOptions& options);

/// The model of the head whose geometry the file holds. Complains about a file that is missing or lacks a value as the
/// component does.
check::HeadModel LoadModel(const std::string& geometryFile);
