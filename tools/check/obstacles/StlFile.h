#pragma once

#include "tools/check/obstacles/Triangle.h"

#include <string>
#include <string_view>
#include <vector>

namespace qmv40::check::obstacles {

/// The triangles of an STL file's content, text or binary. `fileName` is for messages. Throws InputError when the
/// content is no STL file, has a corner that is not three numbers, ends within a triangle, or has no triangle. A text
/// that is cut off between two triangles is accepted.
std::vector<Triangle> TrianglesOfStl(const std::string& fileName, std::string_view content);

} // namespace qmv40::check::obstacles
