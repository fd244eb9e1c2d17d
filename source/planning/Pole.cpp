// The position of the pole, and the angle between two directions in the XY plane.

#include "planning/MovePlanner.h"
#include "planning/RecordFields.h"

#include "maths/ElementaryFunctions.h"
#include "maths/RaisingGeometryErrors.h"

#include <cmath>

namespace qmv40 {

void MovePlanner::CalculatePoleLocation(double& x, double& y, double& z) const {
    ErrorContext context{L"CQMVCalculator::CalculatePoleLocation"};
    RaisingGeometryErrors(context, [&] {
        context.description = L"Getting Lever Centre Vectors.";
        CMaVector positive(0.0, 0.0, 0.0);
        CMaVector negative(0.0, 0.0, 0.0);
        headGeometry.LeverCentrePosition(0, positive);
        headGeometry.LeverCentrePosition(1, negative);

        context.description = L"Getting Positive Lever Centre.";
        const XYZData positiveCentre = PositionOf(positive);
        context.description = L"Getting Negative Lever Centre.";
        const XYZData negativeCentre = PositionOf(negative);

        context.description = L"Calculating Pole Location.";
        x = positiveCentre.XPosition + (negativeCentre.XPosition - positiveCentre.XPosition) / 2.0;
        y = positiveCentre.YPosition + (negativeCentre.YPosition - positiveCentre.YPosition) / 2.0;
        z = positiveCentre.ZPosition + (negativeCentre.ZPosition - positiveCentre.ZPosition) / 2.0;
    });
}

double MovePlanner::CalculateAngleAndDirection(const CMaVector& first, const CMaVector& second) const {
    // 180 / 3.14159265358979: required with the shortened pi, not the exact factor.
    constexpr double degreesInARadian = 57.29577951308238;
    ErrorContext context{L"CQMVCalculator::CalculateAngleAndDirection"};
    return RaisingGeometryErrors(context, [&] {
        context.description = L"Calculate DotProduct Call Failed";
        const double dot = first % second;
        context.description = L"Calculate CrossProduct Call Failed";
        const double cross = (first * second)[2];
        // The arctangent of the quotient is required, not that of two arguments: it gives 90 for an infinite quotient
        // and not-a-number for 0/0.
        double angle = std::abs(ArcTangent(cross / dot) * degreesInARadian);
        if (dot < 0.0) angle = 180.0 - angle;
        return cross < 0.0 ? -angle : angle;
    });
}

CMaVector MovePlanner::PoleLocation() const {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    CalculatePoleLocation(x, y, z);
    return {x, y, z};
}

} // namespace qmv40
