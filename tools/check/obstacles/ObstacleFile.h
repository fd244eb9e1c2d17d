#pragma once

#include "tools/check/obstacles/Solid.h"

namespace qmv40::check::obstacles {

/// What a file says that stands around, in machine coordinates and millimetres: the triangles of an STL file, or the
/// boxes, cylinders and meshes of a document (docs/qmv40.md, docs/schema/input/obstacles.json). Throws InputError for
/// anything else, and for a member that the document should not have: a mistyped one would be left out in silence.
std::vector<Obstacle> ReadObstacles(const std::string& fileName);

} // namespace qmv40::check::obstacles
