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

inline constexpr double assumedBodyDiameter = 40.0;
inline constexpr double assumedJointDiameter = 36.0;

/// Millimetres. Body and joint have to pass the pole sphere closely, with every head: a size that nobody gave is used
/// for fixtures, but finds no fault at the sphere and its stem.
struct PartSizes {
    /// A rod that stands upright on the head centre: its lower end is level with it.
    std::optional<double> bodyDiameter;
    double bodyLength = 150.0;
    std::optional<double> jointDiameter; ///< a ball about the head centre: swivel and tilting part
    double cupDiameter = 14.0;           ///< a ball about the place that sits on the pole sphere
    double leverDiameter = 5.0;          ///< a rod from each lever's pivot to its ball
    std::optional<Stylus> stylus;
};

/// A part in one move.
struct PartInMove {
    obstacles::MovingPart moving;
    bool passesPoleSphere; ///< nothing is said of it and the sphere or its stem
};

/// What the parts are called, in the order of `PartsOf`.
std::vector<const char*> NamesOfParts(const PartSizes& sizes);

/// The index of the stylus' tip among the parts; none without a stylus.
std::optional<std::size_t> IndexOfTip(const PartSizes& sizes);

std::vector<PartInMove> PartsOf(const motion::ExecutedMove& move, const model::HeadModel& head, const PartSizes& sizes);

} // namespace qmv40::check
