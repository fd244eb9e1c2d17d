#pragma once

#include "maths/CMaPoint.h"

/// Geometry other than points, lines and planes. It can be shifted, and rotated about an axis: a coordinate axis or a
/// direction, through the origin or through a given centre. Rotations are right-handed, angles in degrees. A direction
/// may have any length except zero. If it is zero or not finite, GeometryError (Impossible) is thrown and nothing
/// changes.
class CMaNonLinearGeometry : public CMaGeometry {
public:
    virtual void Rotate(double angleDegrees, EAxisType axis) = 0;
    virtual void Rotate(double angleDegrees, const CMaVector& direction) = 0;
    virtual void Rotate(double angleDegrees, EAxisType axis, const CMaPoint& centre) = 0;
    virtual void Rotate(double angleDegrees, const CMaVector& direction, const CMaPoint& centre) = 0;
    virtual void Translate(double x, double y, double z) = 0;
    /// Shifts by the point's coordinates.
    virtual void Translate(const CMaPoint& offset) = 0;
};
