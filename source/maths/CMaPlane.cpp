#include "maths/CMaPlane.h"

#include "maths/fit/PrincipalAxes.h"

using namespace qmv40;

void CMaPlane::Fit(const CMaPointArray& points) {
    fit::ScaledPoints scaled(points);
    const fit::PrincipalAxes axes(scaled);
    if (axes.IsStraight()) throw GeometryError(GeometryError::Reason::Impossible);
    point = scaled.ToCaller(CMaVector(0.0, 0.0, 0.0));
    normal = Unit(axes.axis[2]);
}

CMaPoint CMaPoint::ProjectionOn(const CMaPlane& plane) const noexcept {
    const CMaVector& normal = plane.GetNormal();
    const CMaVector position = To3DVector();
    // Half the distance, because the difference of two coordinates can overflow.
    const double half = (position * 0.5 + plane.GetPoint().To3DVector() * -0.5) % normal;
    const CMaVector foot = position + normal * (-2.0 * half);
    return {foot[0], foot[1], foot[2]};
}
