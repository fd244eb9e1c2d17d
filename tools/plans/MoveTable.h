#pragma once

#include "tools/plans/PlannedMove.h"
#include "tools/text/Console.h"

#include <span>
#include <string>

namespace qmv40::plans {

/// "Plan 2: from A 0, B 0 to A 45, B 90 (deg)". A plan that is the only one has no number. `index`: from 0.
std::string PlanTitle(const Plan& plan, std::size_t index, std::size_t count);

/// For a person at the machine: numbered moves, where each ends and what it does, and which way an arc turns.
void PrintMoveTables(std::span<const Plan> plans, const text::Console& console);
/// Only the table.
void PrintMoveTable(std::span<const PlacedMove> moves, const text::Console& console);

/// For a spreadsheet or a machine's program: one row for each move. X, Y, Z are a straight move's end or a point on an
/// arc's axis, as in the records. A plan's first move has no start.
void PrintMovesAsCsv(std::span<const Plan> plans, const text::Console& console);

} // namespace qmv40::plans
