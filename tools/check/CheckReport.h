#pragma once

#include "tools/check/Assumptions.h"
#include "tools/check/CheckedTour.h"
#include "tools/text/Console.h"
#include "tools/text/Finding.h"

namespace qmv40::check {

/// For people: verdict, findings, worst figures, assumptions, and with `withMoves` the moves of each plan with state
/// and clearance.
void PrintCheckedTour(const CheckedTour& tour, const CheckOptions& options, bool withMoves,
                      const text::Console& console);

text::Json CheckedTourJson(const CheckedTour& tour, const model::HeadModel& head, const CheckOptions& options);

// Shared by the check of a tour and that of all pairs

void PrintFigures(const Figures& figures, const CheckOptions& options, const text::Console& console);
void PrintVerdict(std::size_t findings, const std::string& checked, const text::Console& console);

/// In the shape that all commands share. Documents also have "move", "moveName", "amount", "unit", "part", "obstacle".
text::Finding FindingFor(const Finding& finding, const plans::Plan& plan);
std::vector<text::Finding> FindingsOf(const CheckedPlan& checked);
text::Json FiguresJson(const Figures& figures, const CheckOptions& options);
const char* Verdict(std::size_t findings);
/// "clear, no findings" or "3 findings"
std::string VerdictText(std::size_t findings);

/// "locked" or "open"
const char* NameOf(model::LeverState state);
/// The part that the move must touch: "peg", "lever" or nothing. The clearances leave this contact out.
const char* ContactOf(plans::MoveId id);
/// "2.0000 mm (stylus to vice)"; empty for a finding without an amount.
std::string AmountText(const Finding& finding);

} // namespace qmv40::check
