#pragma once

#include "interface/Records.h"

#include <array>

/// A move: its name, and its field in the record, which is a position or an arc.
struct MoveField {
    const char* name;
    XYZData RequiredMoves::*position;
    ArcData RequiredMoves::*arc;
};

/// The 19 moves in the order in which the machine makes them.
inline constexpr std::array moveFields{
    MoveField{"ApproachUnLockLever", &RequiredMoves::ApproachUnLockLever, nullptr},
    MoveField{"EngageWithUnLockLever", &RequiredMoves::EngageWithUnLockLever, nullptr},
    MoveField{"UnLock", nullptr, &RequiredMoves::UnLock},
    MoveField{"DisengageFromUnLockLever", &RequiredMoves::DisengageFromUnLockLever, nullptr},
    MoveField{"RotateToPeg", nullptr, &RequiredMoves::RotateToPeg},
    MoveField{"MoveToPegAtSafeZ", &RequiredMoves::MoveToPegAtSafeZ, nullptr},
    MoveField{"ApproachPeg", &RequiredMoves::ApproachPeg, nullptr},
    MoveField{"EngageWithPeg", &RequiredMoves::EngageWithPeg, nullptr},
    MoveField{"IntermediateAPosition", nullptr, &RequiredMoves::IntermediateAPosition},
    MoveField{"MoveToBPosition", nullptr, &RequiredMoves::MoveToBPosition},
    MoveField{"MoveToAPosition", nullptr, &RequiredMoves::MoveToAPosition},
    MoveField{"DisengageFromPeg", &RequiredMoves::DisengageFromPeg, nullptr},
    MoveField{"DisengageFromPegToSafeZ", &RequiredMoves::DisengageFromPegToSafeZ, nullptr},
    MoveField{"RotateToLockLever", nullptr, &RequiredMoves::RotateToLockLever},
    MoveField{"MoveToLockLeverAtSafeZ", &RequiredMoves::MoveToLockLeverAtSafeZ, nullptr},
    MoveField{"ApproachLockLever", &RequiredMoves::ApproachLockLever, nullptr},
    MoveField{"EngageWithLockLever", &RequiredMoves::EngageWithLockLever, nullptr},
    MoveField{"Lock", nullptr, &RequiredMoves::Lock},
    MoveField{"DisengageFromLockLever", &RequiredMoves::DisengageFromLockLever, nullptr},
};
static_assert(moveFields.size() == 19);
