#pragma once

#include "tools/captures/CapturedPoint.h"
#include "tools/diagnosis/Finding.h"

namespace qmv40::diagnosis {

/// The findings about sets whose points cannot determine a head: too few different positions, circles that are too
/// small to have an axis, or all points where the sphere is, because a tip offset was in force. A fit to such points
/// means nothing. Empty when the sets can determine a head. Each set has at least one point.
std::vector<Finding> JudgeSets(const captures::CapturedSets& sets);

/// The findings that the angles alone give about a capture that the component refuses because an axis was not held: the
/// sets are exchanged, or the held angle of some points differs from that of most points. Empty when each set holds
/// one axis.
std::vector<Finding> JudgeHeldAngles(const captures::CapturedSets& sets);

} // namespace qmv40::diagnosis
