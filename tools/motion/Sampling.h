#pragma once

#include "tools/motion/Execution.h"

#include <limits>
#include <vector>

/// The swept path of a plan as points, for drawing and animating it.

namespace qmv40::motion {

struct Sample {
    double fraction;         ///< of the move, 0 to 1
    model::Vector3 position; ///< of the machine, where the head centre is
    model::Vector3 driveCup; ///< where the drive cup is
    model::HeadAngles angles;
    model::LeverState lever;
    bool isOnPeg;
};

/// How far apart the samples of a move may be. A move that would take more than 10,000 steps, which by the millimetre
/// are ten metres, is mistaken and gets that many.
struct Spacing {
    double degrees = 3.0;                                         ///< along an arc
    double millimetres = std::numeric_limits<double>::infinity(); ///< along a straight move; unless given: both ends
};

/// The samples of a move, the first at its start, the last at its end. A lever changes at the end of a move, and so
/// does the cup that comes onto the peg; a straight move takes it off at its start.
std::vector<Sample> SamplesOf(const model::HeadModel& head, const ExecutedMove& move, const Spacing& spacing = {});

} // namespace qmv40::motion
