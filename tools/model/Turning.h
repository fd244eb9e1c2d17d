#pragma once

#include "tools/model/Angles.h"

namespace qmv40::model {

/// An axis in space and a right-handed rotation about it.
struct Turning {
    Vector3 centre;
    Vector3 axis; ///< of unit length
    double degrees;

    /// The point after the rotation.
    Vector3 Carried(const Vector3& point) const {
        const Rotation turn(ToRadians(std::fmod(degrees, 360.0)));
        const Vector3 along = Dot(axis, point - centre) * axis;
        const Vector3 across = point - centre - along;
        return centre + along + turn.c * across + turn.s * Cross(axis, across);
    }
};

} // namespace qmv40::model
