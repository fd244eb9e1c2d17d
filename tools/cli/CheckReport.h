#pragma once

#include "cli/CheckedTour.h"
#include "cli/Console.h"
#include "cli/Json.h"

/// For people: each plan's moves with state and room after them, findings, worst figures, verdict.
void PrintCheckedTour(const CheckedTour& tour, const Console& console);

/// The same without the moves: findings, worst figures, verdict.
void PrintJudgement(const CheckedTour& tour, const Console& console);

Json CheckedTourJson(const CheckedTour& tour, const check::HeadModel& head, const check::CheckOptions& options);

// What the check of a tour and that of all pairs have in common

/// "approach-too-short by 2.0000 mm", and a line with what it means and what to do.
void PrintFinding(const check::Finding& finding, const std::string& where, const Console& console);
void PrintFigures(const check::Figures& figures, const Console& console);
void PrintVerdict(std::size_t findings, const std::string& checked, const Console& console);

Json FindingJson(const check::Finding& finding, const check::PlanToCheck& plan);
/// All of a plan's.
Json PlanFindingsJson(const CheckedPlan& checked);
Json FiguresJson(const check::Figures& figures);
Json AllowancesJson(const check::CheckOptions& options);
const char* Verdict(std::size_t findings);
/// "clear, no findings" or "3 findings"
std::string VerdictText(std::size_t findings);

const char* NameOf(check::MoveId id);
/// "locked" or "open"
const char* NameOf(check::LeverState state);
/// What the move must touch, and therefore is left out of its room: "peg", "lever" or nothing.
const char* ContactOf(check::MoveId id);
/// "move 3 UnLock"
std::string MoveText(std::size_t index, check::MoveId id);
/// " by 2.0000 mm", or nothing
std::string AmountText(const check::Finding& finding);
