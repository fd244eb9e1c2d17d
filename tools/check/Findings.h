#pragma once

#include "tools/plans/PlannedMove.h"

#include <optional>
#include <span>
#include <string>

namespace qmv40::check {

/// What can be wrong with a plan.
enum class FindingKind {
    MovesOutOfOrder,
    MoveMissing,
    NotANumber,
    StartIsNotTheEndBefore,
    LeverNotTouched,
    WrongLever,
    LeverNotUnlocked,
    LeverNotLocked,
    EngagedWhileLocked,
    PegNotEngaged,
    IndexedWhileLocked,
    PegTornOut,
    HeadAngleOutOfRange,
    TargetNotReached,
    TargetPositionMissed,
    StillOnThePeg,
    NotLockedAtTheEnd,
    ArcLeavesItsStart,
    ArcLosesItsRadius,
    ArcAxisTilted,
    ArcCentreOff,
    ArcTurnsTheWrongWay,
    ArcAngleOff,
    SwingGoesTheLongWay,
    ApproachFromTheWrongSide,
    ApproachLineMissed,
    ApproachTooShort,
    NotAboveTheApproach,
    BelowSafeHeight,
    TouchesPoleSphere,
    TouchesLever,
    TouchesObstacle,
    TravelLimitExceeded,
    StopUnknown
};

struct FindingText {
    FindingKind kind;
    const char* name;     ///< short and stable: programs look for it
    const char* unit;     ///< of the amount; empty when there is none
    const char* sentence; ///< what is wrong
    const char* remedy;   ///< what to do next
};

const FindingText& TextOf(FindingKind kind);
std::span<const FindingText> AllFindingTexts();

struct Meeting {
    std::string part;
    std::string obstacle;
};

struct Finding {
    FindingKind kind;
    std::optional<std::size_t> move; ///< index among the moves of the plan; empty for the plan as a whole
    std::optional<double> amount;    ///< by how much it is wrong; empty when that is no number
    /// The part of the head that comes too close, and the obstacle; empty for findings that are not about a part.
    std::optional<Meeting> meeting = std::nullopt;
};

} // namespace qmv40::check
