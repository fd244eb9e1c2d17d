#include "maths/CMaLine.h"

#include "maths/CMaPlane.h"
#include "maths/ElementaryFunctions.h"
#include "maths/fit/PrincipalAxes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace qmv40;

void CMaLine::Fit(const CMaPointArray& points) {
    using fit::PrincipalAxes;
    fit::ScaledPoints scaled(points);
    const PrincipalAxes axes(scaled, PrincipalAxes::Accuracy::FullForLargest);
    point = scaled.ToCaller(CMaVector(0.0, 0.0, 0.0));
    direction = Unit(axes.axis[0]);
}

double CMaLine::AngleWith(const CMaPlane& plane) const noexcept {
    const CMaVector& normal = plane.GetNormal();
    // atan2 of both products is accurate over the whole range. The arcsine of the dot product alone has an error of
    // 2e-8 rad near 90 degrees.
    const double radians = ArcTangent(std::fabs(direction % normal), (direction * normal).Magnitude());
    return std::min(radians * (180.0 / std::numbers::pi), 90.0);
}
