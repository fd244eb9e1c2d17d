#pragma once

#include "maths/CMaPoint.h"

class CMaPlane;
class CMaPointArray;

/// A straight line. Before any fit it is the X axis.
class CMaLine : public CMaGeometry {
public:
    /// The line with the smallest sum of squared distances to the points.
    ///
    /// Through their mean, along the direction in which they spread most. The direction is right to 20 times what
    /// rounding the points' coordinates by half a unit in the last place can do to it, and to a few roundings (2e-16
    /// radians) more, magnified where the points spread nearly alike in two directions; the point to 4 roundings of the
    /// largest coordinate. Coordinates may have any finite size.
    /// Throws GeometryError (Impossible), the line unchanged, when there are fewer than two distinct points or a
    /// coordinate is not finite. A set that spreads alike in several directions gives one of the lines that fit best.
    void Fit(const CMaPointArray& points);

    /// The angle between the line and the plane, unsigned: 0 to 90 degrees, right to 4e-16 radians at both ends.
    double AngleWith(const CMaPlane& plane) const noexcept;

    /// A point of the line: the mean of the fitted points.
    const CMaPoint& GetPoint() const noexcept { return point; }
    /// Unit vector along the line. Its sense is arbitrary: callers must not depend on it.
    const CMaVector& GetDirection() const noexcept { return direction; }

private:
    CMaPoint point{0.0, 0.0, 0.0};
    CMaVector direction{1.0, 0.0, 0.0};
};
