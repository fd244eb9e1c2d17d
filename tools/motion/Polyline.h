#pragma once

#include "tools/model/Path.h"

#include <vector>

namespace qmv40::motion {

/// The ends of a path's chords; the last one is the path's own end. A straight line is one chord. The ends lie on the
/// arc, in its direction and over its whole angle. No chord is off the arc by more than `tolerance` (mm, positive).
std::vector<model::Vector3> ChordEnds(const model::Path& path, double tolerance);

} // namespace qmv40::motion
