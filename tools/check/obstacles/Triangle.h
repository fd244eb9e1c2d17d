#pragma once

#include "tools/model/Vector3.h"

namespace qmv40::check::obstacles {

/// Three points and the area between them. Two or all of them may be one point: a line, or a point.
struct Triangle {
    model::Vector3 a;
    model::Vector3 b;
    model::Vector3 c;
};

/// The smallest distance between two lines from point to point.
double DistanceOfLines(const model::Vector3& a, const model::Vector3& b, const model::Vector3& c,
                       const model::Vector3& d);

/// The smallest distance between two triangles, in closed form; 0 where they meet.
double Distance(const Triangle& left, const Triangle& right);

/// How far along the direction from `origin` the triangle is crossed; negative where it is not.
double CrossedAt(const Triangle& triangle, const model::Vector3& origin, const model::Vector3& direction);

} // namespace qmv40::check::obstacles
