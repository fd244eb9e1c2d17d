#pragma once

#include "tools/model/Vector3.h"

namespace qmv40::check::obstacles {

/// Three points and the area between them. When corners coincide it is a line or a point.
struct Triangle {
    model::Vector3 a;
    model::Vector3 b;
    model::Vector3 c;
};

/// The smallest distance between two triangles, in closed form; 0 where they meet.
double Distance(const Triangle& left, const Triangle& right);

/// Where the ray from `origin` crosses the triangle, in multiples of `direction`; negative when it does not.
double CrossedAt(const Triangle& triangle, const model::Vector3& origin, const model::Vector3& direction);

} // namespace qmv40::check::obstacles
