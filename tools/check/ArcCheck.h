#pragma once

#include "tools/check/Findings.h"
#include "tools/motion/Execution.h"

#include <vector>

/// Holds an arc against the turn that its purpose asks for.

namespace qmv40::check {

struct WantedArc {
    model::Vector3 start; ///< where the machine has to be before it
    model::Turning turning;
    bool isSwing = false; ///< begins anywhere; turns by whole turns more or less lead to the same bearing
};

/// What is wrong with the arc, each by its kind and amount; begun where the machine stands at `start`.
std::vector<Finding> FindingsOfArc(const ArcData& arc, const model::Vector3& start, const WantedArc& wanted);

} // namespace qmv40::check
