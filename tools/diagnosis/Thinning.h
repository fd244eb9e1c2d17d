#pragma once

#include "tools/diagnosis/MistakeSearch.h"

namespace qmv40::diagnosis {

/// SearchMistakes in a part of a capture of many points, its findings extended to all points: the time is proportional
/// to their number.
HeadExplained ExplainHead(const captures::CapturedSets& sets, const model::Vector3& unlocking);

} // namespace qmv40::diagnosis
