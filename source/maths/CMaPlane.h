#pragma once

#include "maths/CMaPoint.h"

class CMaPointArray;

/// A plane. Before any fit it is the XY plane.
class CMaPlane : public CMaGeometry {
public:
    /// The plane with the smallest sum of squared distances to the points.
    ///
    /// Through their mean, square to the direction in which they spread least. The normal is right to 20 times what
    /// rounding the points' coordinates by half a unit in the last place can do to it, and to a few roundings (2e-16
    /// radians) more, magnified where the points spread nearly alike in two directions; the point to 4 roundings of the
    /// largest coordinate. Coordinates may have any finite size.
    /// Throws GeometryError (Impossible), the plane unchanged, when there are fewer than three distinct points, when
    /// all lie on one line as far as the rounding of their coordinates lets one tell, or when a coordinate is not
    /// finite.
    void Fit(const CMaPointArray& points);

    /// A point of the plane: the mean of the fitted points.
    const CMaPoint& GetPoint() const noexcept { return point; }
    /// Unit normal. Its sign is arbitrary: callers must not depend on it.
    const CMaVector& GetNormal() const noexcept { return normal; }

private:
    CMaPoint point{0.0, 0.0, 0.0};
    CMaVector normal{0.0, 0.0, 1.0};
};
