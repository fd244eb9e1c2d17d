#pragma once

#include "tools/check/obstacles/Solid.h"

namespace qmv40::check::obstacles {

/// The obstacles that a file describes, in machine coordinates and millimetres: the triangles of an STL file, or the
/// boxes, cylinders and meshes of a document (docs/qmv40.md, docs/schema/input/obstacles.json). Throws InputError for
/// anything else, also for an unknown member: a mistyped one must not be ignored silently.
std::vector<Obstacle> ReadObstacles(const std::string& fileName);

} // namespace qmv40::check::obstacles
