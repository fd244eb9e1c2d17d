#include "maths/CMaLine.h"

#include "maths/CMaPlane.h"
#include "maths/PrincipalAxes.h"
#include "maths/Unit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

void CMaLine::Fit(const CMaPointArray& points) {
    ScaledPoints scaled(points);
    const PrincipalAxes axes(scaled, PrincipalAxes::Digits::AllOfTheLongest);
    point = scaled.ToCaller(CMaVector(0.0, 0.0, 0.0));
    direction = Unit(axes.axis[0]);
}

double CMaLine::AngleWith(const CMaPlane& plane) const noexcept {
    const CMaVector& normal = plane.GetNormal();
    // Of the two ways to the angle each is good at one end; together they are good everywhere.
    const double radians = std::atan2(std::fabs(direction % normal), (direction * normal).Magnitude());
    return std::min(radians * (180.0 / std::numbers::pi), 90.0);
}
