#pragma once

#include "check/Figures.h"
#include "check/Sampling.h"
#include "cli/Console.h"
#include "cli/Json.h"

#include <vector>

/// A plan that was checked, and what was found.
struct CheckedPlan {
    check::PlanToCheck plan;
    check::PlanReport report;
};

/// Plans that were checked one by one.
struct CheckedTour {
    std::vector<CheckedPlan> plans;
    check::Figures figures;

    std::size_t Findings() const;
};

/// For people: each plan's moves with state and room after them, findings, worst figures, verdict.
void PrintCheckedTour(const CheckedTour& tour, const Console& console);

Json CheckedTourJson(const CheckedTour& tour, const check::HeadModel& head, const check::CheckOptions& options);

// What the check of a tour and that of all pairs have in common

/// "approach-too-short by 2.0000 mm", and a line with what it means and what to do.
void PrintFinding(const check::Finding& finding, const std::string& where, const Console& console);
void PrintFigures(const check::Figures& figures, const Console& console);
void PrintVerdict(std::size_t findings, const std::string& checked, const Console& console);

Json FindingJson(const check::Finding& finding, const check::PlanToCheck& plan);
Json FiguresJson(const check::Figures& figures);
Json AllowancesJson(const check::CheckOptions& options);
const char* Verdict(std::size_t findings);

/// "move 3 UnLock"
std::string MoveText(std::size_t index, check::MoveId id);
