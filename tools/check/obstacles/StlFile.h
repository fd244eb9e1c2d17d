#pragma once

#include "tools/check/obstacles/Triangle.h"

#include <string>
#include <string_view>
#include <vector>

namespace qmv40::check::obstacles {

/// The triangles of an STL file's content, text or binary. `fileName` is for messages. Throws InputError for what is no
/// such file, for a file that is cut off, and for one without a triangle.
std::vector<Triangle> TrianglesOfStl(const std::string& fileName, std::string_view content);

} // namespace qmv40::check::obstacles
