#pragma once

#include "interface/Records.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

namespace qmv40::plans {

/// The 19 moves of one indexing, named by their purpose, in the order in which they must be made.
enum class MoveId {
    ApproachUnLockLever,
    EngageWithUnLockLever,
    UnLock,
    DisengageFromUnLockLever,
    RotateToPeg,
    MoveToPegAtSafeZ,
    ApproachPeg,
    EngageWithPeg,
    IntermediateAPosition,
    MoveToBPosition,
    MoveToAPosition,
    DisengageFromPeg,
    DisengageFromPegToSafeZ,
    RotateToLockLever,
    MoveToLockLeverAtSafeZ,
    ApproachLockLever,
    EngageWithLockLever,
    Lock,
    DisengageFromLockLever
};

inline constexpr std::size_t moveCount = 19;

constexpr std::size_t IndexOf(MoveId id) { return static_cast<std::size_t>(id); }
/// As people count them: 1 to 19.
constexpr std::size_t NumberOf(MoveId id) { return IndexOf(id) + 1; }

/// What is known of a move before it is planned: its name, its field in the record, its purpose.
struct Move {
    MoveId id;
    const char* name;
    const char* purpose;
    std::variant<XYZData RequiredMoves::*, ArcData RequiredMoves::*> field;
};

/// All of them, by index.
std::span<const Move> AllMoves();

const char* NameOf(MoveId id);
/// The move of that name; null when there is none.
const Move* FindMove(std::string_view name);

/// The number of a move, 1 to 19, from its text; empty for every other text.
std::optional<std::size_t> ParseMoveNumber(std::string_view text);

/// The calls for std::visit, one for each kind of move.
template <typename... Calls> struct ForKind : Calls... { using Calls::operator()...; };
template <typename... Calls> ForKind(Calls...) -> ForKind<Calls...>;

} // namespace qmv40::plans
