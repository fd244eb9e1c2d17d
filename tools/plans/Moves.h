#pragma once

#include "interface/Records.h"
#include "tools/plans/PlannedMove.h"

#include <span>
#include <string>
#include <variant>

namespace qmv40::plans {

/// One of the 19 moves: its field in the record, and what it is for.
struct Move {
    const char* name;
    const char* purpose;
    std::variant<XYZData RequiredMoves::*, ArcData RequiredMoves::*> field;
};

/// All of them, in the order in which the machine makes them.
std::span<const Move> AllMoves();

const char* NameOf(MoveId id);

/// How the machine turns, for a person beside it: "turn 90.0000 deg clockwise, seen from above".
std::string TurnInWords(const ArcData& arc);

/// Picks a call for each kind of move in std::visit.
template <typename... Calls> struct ForKind : Calls... { using Calls::operator()...; };
template <typename... Calls> ForKind(Calls...) -> ForKind<Calls...>;

} // namespace qmv40::plans
