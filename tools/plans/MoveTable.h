#pragma once

#include "tools/plans/PlannedMove.h"
#include "tools/plans/Tour.h"
#include "tools/text/Console.h"

#include <span>

namespace qmv40::plans {

/// For a person at the machine: numbered moves, where each ends and what it does, and which way an arc turns.
void PrintMoveTables(std::span<const Plan> plans, const text::Console& console);
/// The table alone.
void PrintMoveTable(std::span<const PlacedMove> moves, const text::Console& console);

/// X, Y, Z are a straight move's end or a point on an arc's axis, as the records have them.
inline constexpr const char* movesCsvHeader =
    "Plan,Move,Name,Kind,X,Y,Z,i,j,k,RotationAngle,StartX,StartY,StartZ,EndX,EndY,EndZ";

/// For a spreadsheet or a machine's program: one row a move. A plan's first move has no start.
void PrintMovesAsCsv(std::span<const Plan> plans, const text::Console& console);

} // namespace qmv40::plans
