#pragma once

#include "check/PlanCheck.h"

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

/// A straight move gives its two ends, an arc a sample at least every `degreesBetween`. Lever and peg change at the
/// end.
std::vector<SweptMove> SweptPath(const HeadModel& head, const PlanReport& report, double degreesBetween = 3.0);

} // namespace check
