#pragma once

#include "tools/model/Path.h"

#include <vector>

namespace qmv40::motion {

/// Where the chords of a path end, the last one at the path's own end: a straight line is one chord. The ends lie on
/// the arc, in its sense and over its whole angle, and no chord leaves the arc by more than `tolerance` (mm, positive).
std::vector<model::Vector3> ChordEnds(const model::Path& path, double tolerance);

} // namespace qmv40::motion
