#pragma once

#include "check/PlanCheck.h"

#include <limits>
#include <vector>

/// The swept path of a plan as points, for drawing and animating it.

namespace check {

struct Sample {
    double fraction;    ///< of the move, 0 to 1
    CMaVector position; ///< of the machine, where the head centre is
    CMaVector driveCup; ///< where the drive cup is
    HeadAngles angles;
    LeverState lever;
    bool isOnPeg;
};

struct SweptMove {
    MoveId id;
    bool isArc;
    Room room;
    std::vector<Sample> samples; ///< the first at the start of the move, the last at its end
};

/// How far apart the samples of a move may be. A move that would take more than 10,000 steps, which by the millimetre
/// are ten metres, is mistaken and gets that many.
struct Spacing {
    double degrees = 3.0;                                         ///< along an arc
    double millimetres = std::numeric_limits<double>::infinity(); ///< along a straight move; unless given: both ends
};

/// A lever changes at the end of a move, and so does the cup that comes onto the peg; a straight move takes it off at
/// its start.
std::vector<SweptMove> SweptPath(const HeadModel& head, const PlanReport& report, const Spacing& spacing = {});

} // namespace check
