#pragma once

#include "tools/check/Findings.h"
#include "tools/motion/Execution.h"

#include <vector>

/// Compares an arc with the turn that its purpose requires.

namespace qmv40::check {

struct WantedArc {
    model::Vector3 start; ///< the required machine position before it
    model::Turning turning;
    bool isSwing = false; ///< it may begin anywhere; turns that differ by whole turns lead to the same azimuth
};

/// The findings about an arc that begins with the machine at `start`.
std::vector<Finding> FindingsOfArc(const ArcData& arc, const model::Vector3& start, const WantedArc& wanted);

} // namespace qmv40::check
