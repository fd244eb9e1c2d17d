#pragma once

#include "tools/diagnosis/CapturedPoint.h"
#include "tools/diagnosis/Finding.h"

namespace qmv40::diagnosis {

/// Whether the sets can determine a head at all, by where their points lie: enough different positions, circles that
/// are large enough to have an axis. Whatever a fit would make of such points means nothing. Empty when they can.
std::vector<Finding> JudgeSets(const CapturedSets& sets);

} // namespace qmv40::diagnosis
