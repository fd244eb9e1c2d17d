#pragma once

#include "tools/motion/Execution.h"

#include <limits>
#include <vector>

/// The path of a plan as points, for drawing and animation.

namespace qmv40::motion {

struct Sample {
    double fraction;         ///< of the move, 0 to 1
    model::Vector3 position; ///< of the machine
    model::Vector3 driveCup; ///< where the drive cup is
    model::HeadAngles angles;
    model::LeverState lever;
    bool isOnPeg;
    bool isLeverPushed; ///< the levers are pushed part of the way: neither locked nor open
};

/// The largest distance between the samples of a move. A move that needs more than 10,000 steps (ten metres, at a step
/// of 1 mm) is a mistake; it gets 10,000.
struct Spacing {
    double degrees = 3.0;                                         ///< along an arc
    double millimetres = std::numeric_limits<double>::infinity(); ///< along a straight move; by default only both ends
};

/// The samples of a move, from its start to its end. A lever changes at the end of a move, and the cup comes onto the
/// peg at the end of a move. A straight move takes it off at the start.
std::vector<Sample> SamplesOf(const model::HeadModel& head, const ExecutedMove& move, const Spacing& spacing = {});

} // namespace qmv40::motion
