#include "tools/plans/Moves.h"

#include <algorithm>
#include <array>
#include <string>

namespace qmv40::plans {

namespace {

using enum MoveId;
using M = RequiredMoves;

// The table of moves is 100 columns wide, so a purpose has at most 32 letters.
constexpr std::array<Move, moveCount> allMoves{{
    {ApproachUnLockLever, "ApproachUnLockLever", "go to the locked lever", &M::ApproachUnLockLever},
    {EngageWithUnLockLever, "EngageWithUnLockLever", "touch the lever's ball", &M::EngageWithUnLockLever},
    {UnLock, "UnLock", "push the lever to unlock", &M::UnLock},
    {DisengageFromUnLockLever, "DisengageFromUnLockLever", "rise clear, to the safe height",
     &M::DisengageFromUnLockLever},
    {RotateToPeg, "RotateToPeg", "swing round to the peg", &M::RotateToPeg},
    {MoveToPegAtSafeZ, "MoveToPegAtSafeZ", "go above the peg's approach", &M::MoveToPegAtSafeZ},
    {ApproachPeg, "ApproachPeg", "go down in front of the peg", &M::ApproachPeg},
    {EngageWithPeg, "EngageWithPeg", "put the drive cup on the peg", &M::EngageWithPeg},
    {IntermediateAPosition, "IntermediateAPosition", "turn the head's A to 0", &M::IntermediateAPosition},
    {MoveToBPosition, "MoveToBPosition", "turn the head's B to the target", &M::MoveToBPosition},
    {MoveToAPosition, "MoveToAPosition", "turn the head's A to the target", &M::MoveToAPosition},
    {DisengageFromPeg, "DisengageFromPeg", "back off the peg", &M::DisengageFromPeg},
    {DisengageFromPegToSafeZ, "DisengageFromPegToSafeZ", "rise to the safe height", &M::DisengageFromPegToSafeZ},
    {RotateToLockLever, "RotateToLockLever", "swing round to the lock lever", &M::RotateToLockLever},
    {MoveToLockLeverAtSafeZ, "MoveToLockLeverAtSafeZ", "go above the lever's approach", &M::MoveToLockLeverAtSafeZ},
    {ApproachLockLever, "ApproachLockLever", "go down beside the lever", &M::ApproachLockLever},
    {EngageWithLockLever, "EngageWithLockLever", "touch the lever's ball", &M::EngageWithLockLever},
    {Lock, "Lock", "push the lever to lock", &M::Lock},
    {DisengageFromLockLever, "DisengageFromLockLever", "lift off the locked lever", &M::DisengageFromLockLever},
}};

} // namespace

std::span<const Move> AllMoves() { return allMoves; }

const char* NameOf(MoveId id) { return allMoves[IndexOf(id)].name; }

std::optional<std::size_t> ParseMoveNumber(std::string_view text) {
    for (std::size_t number = 1; number <= moveCount; ++number) {
        if (text == std::to_string(number)) return number;
    }
    return std::nullopt;
}

const Move* FindMove(std::string_view name) {
    const auto* const found = std::ranges::find(allMoves, name, &Move::name);
    return found == allMoves.end() ? nullptr : found;
}

} // namespace qmv40::plans
