#pragma once

#include "tools/diagnosis/CapturedPoint.h"
#include "tools/diagnosis/Finding.h"

namespace qmv40::diagnosis {

/// What the angles alone say about a capture that the component refuses because an axis was not held: the sets are
/// exchanged, or these points' angle is not that of most others. Empty when each set holds one axis.
std::vector<Finding> JudgeHeldAngles(const CapturedSets& sets);

} // namespace qmv40::diagnosis
