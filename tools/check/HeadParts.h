#pragma once

#include "tools/check/obstacles/Sweep.h"
#include "tools/motion/Execution.h"

#include <optional>
#include <vector>

/// The moving parts of the head as bodies, each a ball or a rod with round ends, and where they are in a move. None of
/// their sizes is part of a head's geometry: each has a default, and the report says with which it was worked out.

namespace qmv40::check {

struct Stylus {
    double length = 0.0; ///< mm, from the head centre to the centre of the tip
    double diameter = 4.0;
    double tipDiameter = 5.0;
};

/// Millimetres.
struct PartSizes {
    /// A rod that stands upright on the head centre: its lower end is level with it.
    double bodyDiameter = 40.0;
    double bodyLength = 150.0;
    double jointDiameter = 36.0; ///< a ball about the head centre: swivel and tilting part
    double cupDiameter = 14.0;   ///< a ball about the place that sits on the pole sphere
    double leverDiameter = 5.0;  ///< a rod from each lever's pivot to its ball
    std::optional<Stylus> stylus;
};

/// A part in one move.
struct PartInMove {
    obstacles::MovingPart moving;
    bool passesPoleSphere; ///< it is made to meet the pole sphere: cup and levers
};

/// What the parts are called, in the order of `PartsOf`.
std::vector<const char*> NamesOfParts(const PartSizes& sizes);

/// The index of the stylus' tip among the parts; none without a stylus.
std::optional<std::size_t> IndexOfTip(const PartSizes& sizes);

std::vector<PartInMove> PartsOf(const motion::ExecutedMove& move, const model::HeadModel& head, const PartSizes& sizes);

} // namespace qmv40::check
