#pragma once

#include "tools/check/obstacles/Sweep.h"

#include <algorithm>
#include <limits>

/// The smallest clearance of a part from a solid among equally spaced places of its move. It is never below the true
/// one, which may lie between two samples.
inline double SampledClearance(const qmv40::check::obstacles::MovingPart& part,
                               const qmv40::check::obstacles::Solid& solid, int samples) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    double smallest = infinite;
    for (int i = 0; i <= samples; ++i) {
        const qmv40::check::obstacles::Axis axis = part.at(static_cast<double>(i) / samples);
        smallest = std::min(smallest, solid.DistanceTo({axis.from, axis.to, axis.to}, infinite) - part.radius);
    }
    return smallest;
}
