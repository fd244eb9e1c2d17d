#pragma once

#include "tools/plans/PlannedMove.h"

namespace qmv40::check {

/// The purpose of each of the 19 moves, as conditions that can be checked.
struct MoveRequirement {
    plans::MoveId id;

    enum class Ending {
        Anywhere,
        BeforeLever,  ///< on the line to the ball of the lever in reach, far enough off
        AtLever,      ///< at its ball
        ClearOfLever, ///< at least as far from the ball as an approach position
        BeforePeg,    ///< on the line on which cup and peg meet, far enough off
        AtPeg         ///< the cup on the peg
    } ending = Ending::Anywhere;

    enum class Arc {
        None,  ///< a straight move
        Push,  ///< pushes the lever into its other state
        Swing, ///< about the pole, to the azimuth of the position after it
        AToZero,
        BToTarget,
        AToTarget
    } arc = Arc::None;

    enum class Height { Free, SafeAtEnd, SafeAllAlong } height = Height::Free;

    bool isVertical = false; ///< neither X nor Y changes
};

const MoveRequirement& RequirementOf(plans::MoveId id);

} // namespace qmv40::check
