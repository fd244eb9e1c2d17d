#pragma once

#include "cli/Console.h"
#include "cli/HeadAngles.h"
#include "interface/Records.h"

#include <span>

/// One indexing of the head.
struct Plan {
    HeadAngles from;
    HeadAngles to;
    RequiredMoves moves;
};

/// For a person at the machine: numbered moves, what each does, and where it goes.
void PrintMoveTables(std::span<const Plan> plans, const Console& console);

/// For a spreadsheet or a machine's program: one row a move. See the source for the columns.
void PrintMovesAsCsv(std::span<const Plan> plans, const Console& console);
