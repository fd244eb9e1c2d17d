#pragma once

#include "maths/CMaVector.h"

class CMaPlane;

/// A point in space: three coordinates in the caller's unit.
class CMaPoint : public CMaGeometry {
public:
    CMaPoint(double x, double y, double z) noexcept : coordinates{x, y, z} {}

    double& x() noexcept { return coordinates[0]; }
    double& y() noexcept { return coordinates[1]; }
    double& z() noexcept { return coordinates[2]; }
    double x() const noexcept { return coordinates[0]; }
    double y() const noexcept { return coordinates[1]; }
    double z() const noexcept { return coordinates[2]; }

    /// The vector from the origin to this point.
    CMaVector To3DVector() const noexcept { return {coordinates[0], coordinates[1], coordinates[2]}; }

    /// The foot of the perpendicular from this point to the plane. The error of each coordinate is at most one unit in
    /// the last place of the coordinate (of the foot or of this point, whichever is larger), plus four units in the
    /// last place of the distance between this point and the plane's point. Example: 1.2e-10 mm for coordinates of 1e6
    /// mm and a distance of 100 mm. A result is not finite when a coordinate is not finite or that distance is beyond
    /// the largest double.
    CMaPoint ProjectionOn(const CMaPlane& plane) const noexcept;

private:
    double coordinates[3];
};
