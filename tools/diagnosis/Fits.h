#pragma once

#include "maths/CMaCircle.h"
#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "maths/CMaPointArray.h"
#include "tools/text/Json.h"

#include <cstddef>
#include <vector>

namespace qmv40::diagnosis {

/// Shapes fitted to points, with residuals. Lengths are in the unit of the points. A fit that is impossible is thrown
/// as ComponentError, in the words of the component.

/// One residual for each point, in the order of the points.
struct Residuals {
    std::vector<double> values;

    double Rms() const;
    /// The index of the point with the largest residual.
    std::size_t Worst() const;
};

/// Residuals are distances from the circle, never negative.
struct CircleFit {
    CMaVector centre;
    CMaVector normal; ///< of unit length; its sense is arbitrary
    double radius;
    Residuals residuals;
    double arcCovered; ///< degrees: a whole turn less the widest gap between neighbouring points
};

/// Residuals are distances along the normal, with their sign.
struct PlaneFit {
    CMaVector point;
    CMaVector normal;
    Residuals residuals;
};

/// Residuals are distances from the line, never negative.
struct LineFit {
    CMaVector point;
    CMaVector direction;
    Residuals residuals;
};

CircleFit FitCircle(const CMaPointArray& points);
PlaneFit FitPlane(const CMaPointArray& points);
LineFit FitLine(const CMaPointArray& points);

/// `direction` or its opposite: the one whose angle with `reference` is at most 90 degrees.
CMaVector Facing(const CMaVector& direction, const CMaVector& reference);

/// `direction` or its opposite: the one whose largest component is positive.
CMaVector WithLargestPositive(const CMaVector& direction);

text::Json PointJson(const CMaVector& point);
text::Json DirectionJson(const CMaVector& direction);
/// Centre, normal, radius, RMS and residuals.
text::Json CircleJson(const CircleFit& fit);

} // namespace qmv40::diagnosis
