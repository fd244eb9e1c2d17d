#include "maths/CMaCircle.h"

#include "maths/DegreeTurn.h"
#include "maths/fit/CircleFit.h"

#include <cmath>

using namespace qmv40;

namespace {

CMaPoint At(const CMaVector& position) noexcept { return {position[0], position[1], position[2]}; }

/// `v` turned about the unit vector `axis`.
CMaVector Turned(const CMaVector& v, const CMaVector& axis, const DegreeTurn& turn) noexcept {
    return v * turn.cosine + (axis * v) * turn.sine + axis * ((axis % v) * (1.0 - turn.cosine));
}

CMaVector UnitAlong(const CMaVector& direction) {
    const double length = direction.Magnitude();
    if (!std::isfinite(length) || length == 0.0) throw GeometryError(GeometryError::Reason::Impossible);
    // Scaled by a power of two first, because 1 / length can overflow.
    const int exponent = -std::ilogb(length);
    const CMaVector nearUnit(std::ldexp(direction[0], exponent), std::ldexp(direction[1], exponent),
                             std::ldexp(direction[2], exponent));
    return Unit(nearUnit);
}

} // namespace

void CMaCircle::Fit(const CMaPointArray& points, long evaluationLimit) {
    const fit::FittedCircle fitted = fit::FitCircle(points, evaluationLimit);
    centre = fitted.centre;
    normal = fitted.normal;
    radius = fitted.radius;
}

void CMaCircle::Rotate(double angleDegrees, EAxisType axis) { Rotate(angleDegrees, axis, CMaPoint(0.0, 0.0, 0.0)); }

void CMaCircle::Rotate(double angleDegrees, const CMaVector& direction) {
    Rotate(angleDegrees, direction, CMaPoint(0.0, 0.0, 0.0));
}

void CMaCircle::Rotate(double angleDegrees, EAxisType axis, const CMaPoint& about) {
    CMaVector position = centre.To3DVector();
    position.Rotate(angleDegrees, axis, about);
    normal.Rotate(angleDegrees, axis, CMaPoint(0.0, 0.0, 0.0));
    centre = At(position);
}

void CMaCircle::Rotate(double angleDegrees, const CMaVector& direction, const CMaPoint& about) {
    const CMaVector axis = UnitAlong(direction);
    const DegreeTurn turn(angleDegrees);
    const CMaVector pivot = about.To3DVector();
    const CMaVector arm = centre.To3DVector() + pivot * -1.0;
    centre = At(pivot + Turned(arm, axis, turn));
    normal = Unit(Turned(normal, axis, turn)); // length 1 again: roundings of many rotations must not add up
}

void CMaCircle::Translate(double x, double y, double z) {
    centre = CMaPoint(centre.x() + x, centre.y() + y, centre.z() + z);
}

void CMaCircle::Translate(const CMaPoint& offset) { Translate(offset.x(), offset.y(), offset.z()); }
