#pragma once

#include "tools/check/obstacles/Sweep.h"
#include "tools/motion/Execution.h"

#include <optional>
#include <vector>

/// The moving parts of the head as bodies, each a ball or a rod with round ends, and their places in a move. A head's
/// geometry has none of their sizes. Each has a default, except the stylus, which is left out when the user does not
/// give its length. The report says which sizes were used.

namespace qmv40::check {

struct Stylus {
    double length = 0.0; ///< mm, from the head's centre to the centre of the tip
    double diameter = 4.0;
    double tipDiameter = 5.0;
};

inline constexpr double assumedBodyDiameter = 40.0;
inline constexpr double assumedJointDiameter = 36.0;

/// Millimetres. On every head, body and joint pass close to the pole sphere. When the user gives no size for them,
/// their clearance to fixtures is computed with the default size, and their clearance to the pole sphere and its stem
/// is not computed.
struct PartSizes {
    /// An upright rod whose lower end is at the height of the head's centre.
    std::optional<double> bodyDiameter;
    double bodyLength = 150.0;
    std::optional<double> jointDiameter; ///< a ball about the head's centre: swivel and tilting part
    double cupDiameter = 14.0;           ///< a ball about the place that sits on the pole sphere
    double leverDiameter = 5.0;          ///< a rod from each lever's pivot to its ball
    std::optional<Stylus> stylus;
};

/// A part in one move.
struct PartInMove {
    obstacles::MovingPart moving;
    bool passesPoleSphere; ///< it is not compared with the sphere and its stem
};

/// The names of the parts, in the order of `PartsOf`.
std::vector<const char*> NamesOfParts(const PartSizes& sizes);

/// With a stylus, its tip is the last one.
std::vector<PartInMove> PartsOf(const motion::ExecutedMove& move, const model::HeadModel& head, const PartSizes& sizes);

} // namespace qmv40::check
