#pragma once

#include "tools/check/Assumptions.h"
#include "tools/check/CheckedTour.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

namespace qmv40::check {

/// For people: the moves of each plan with state and clearance, findings, worst figures, assumptions, verdict.
void PrintCheckedTour(const CheckedTour& tour, const CheckOptions& options, const text::Console& console);

/// The same without the moves: findings, worst figures, verdict.
void PrintJudgement(const CheckedTour& tour, const CheckOptions& options, const text::Console& console);

text::Json CheckedTourJson(const CheckedTour& tour, const model::HeadModel& head, const CheckOptions& options);

// Shared by the check of a tour and that of all pairs

/// "approach-too-short by 2.0000 mm (stylus to vice)", and below it the sentence and the remedy.
void PrintFinding(const Finding& finding, const std::string& where, const text::Console& console);
void PrintFigures(const Figures& figures, const CheckOptions& options, const text::Console& console);
void PrintVerdict(std::size_t findings, const std::string& checked, const text::Console& console);

text::Json FindingJson(const Finding& finding, const plans::PlanToCheck& plan);
/// All findings of one plan.
text::Json PlanFindingsJson(const CheckedPlan& checked);
text::Json FiguresJson(const Figures& figures, const CheckOptions& options);
const char* Verdict(std::size_t findings);
/// "clear, no findings" or "3 findings"
std::string VerdictText(std::size_t findings);

/// "locked" or "open"
const char* NameOf(model::LeverState state);
/// The part that the move must touch, and to which its clearance is therefore not computed: "peg", "lever" or nothing.
const char* ContactOf(plans::MoveId id);
/// "move 3 UnLock"
std::string MoveText(std::size_t index, plans::MoveId id);
/// " by 2.0000 mm", or nothing
std::string AmountText(const Finding& finding);

} // namespace qmv40::check
