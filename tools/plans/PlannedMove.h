#pragma once

#include "interface/Records.h"
#include "tools/model/HeadAngles.h"

#include <cstddef>
#include <variant>
#include <vector>

namespace qmv40::plans {

/// The moves of one indexing, by what they are for, in the order in which they must be made.
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

/// A straight move to a position, or an arc.
struct PlannedMove {
    MoveId id;
    std::variant<XYZData, ArcData> data;
};

/// One indexing to be checked: what was asked for, and the moves in the order in which they would be made.
struct PlanToCheck {
    model::HeadAngles from;
    model::HeadAngles to;
    std::vector<PlannedMove> moves;
};

/// The moves of a record, in the order of its fields.
std::vector<PlannedMove> MovesInOrder(const RequiredMoves& record);

} // namespace qmv40::plans
