#pragma once

#include "tools/diagnosis/Finding.h"
#include "tools/diagnosis/fit/CapturedPoint.h"

namespace qmv40::diagnosis {

/// The findings about sets whose points cannot determine a head: too few different positions, or circles that are too
/// small to have an axis. A fit to such points means nothing. Empty when the sets can determine a head.
std::vector<Finding> JudgeSets(const fit::CapturedSets& sets);

} // namespace qmv40::diagnosis
