#include "maths/CMaPlane.h"

#include "maths/PrincipalAxes.h"
#include "maths/Unit.h"

void CMaPlane::Fit(const CMaPointArray& points) {
    ScaledPoints scaled(points);
    const PrincipalAxes axes(scaled);
    if (axes.IsStraight()) throw GeometryError(GeometryError::Reason::Impossible);
    point = scaled.ToCaller(CMaVector(0.0, 0.0, 0.0));
    normal = Unit(axes.axis[2]);
}

CMaPoint CMaPoint::ProjectionOn(const CMaPlane& plane) const noexcept {
    const CMaVector& normal = plane.GetNormal();
    const CMaVector position = To3DVector();
    const double distance = (position + plane.GetPoint().To3DVector() * -1.0) % normal;
    const CMaVector foot = position + normal * -distance;
    return {foot[0], foot[1], foot[2]};
}
