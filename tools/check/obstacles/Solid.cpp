#include "tools/check/obstacles/Solid.h"

#include <algorithm>

namespace qmv40::check::obstacles {

double Table::DistanceTo(const Triangle& triangle, double enough) const {
    return std::min(std::min({triangle.a.z, triangle.b.z, triangle.c.z}) - height, enough);
}

double Rod::DistanceTo(const Triangle& triangle, double enough) const {
    return std::min(Distance(triangle, line) - radius, enough);
}

} // namespace qmv40::check::obstacles
