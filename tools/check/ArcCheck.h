#pragma once

#include "check/Execution.h"
#include "check/Findings.h"

#include <vector>

/// Holds an arc against the turn that its purpose asks for.

namespace check {

struct WantedArc {
    CMaVector start; ///< where the machine has to be before it
    Turning turning;
    bool isSwing = false; ///< begins anywhere; turns by whole turns more or less lead to the same bearing
};

/// What is wrong with the arc, each by its kind and amount; begun where the machine stands at `start`.
std::vector<Finding> FindingsOfArc(const ArcData& arc, const CMaVector& start, const WantedArc& wanted);

} // namespace check
