#pragma once

#include "tools/plans/Tour.h"
#include "tools/text/Console.h"

#include <span>

namespace qmv40::plans {

/// For a person at the machine: numbered moves, what each does, and where it goes.
void PrintMoveTables(std::span<const Plan> plans, const text::Console& console);

/// For a spreadsheet or a machine's program: one row a move. See the source for the columns.
void PrintMovesAsCsv(std::span<const Plan> plans, const text::Console& console);

} // namespace qmv40::plans
