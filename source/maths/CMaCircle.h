#pragma once

#include "maths/CMaCurve.h"

class CMaPointArray;

/// A circle in space: a centre, a plane and a radius. Before any fit it lies about the origin in the XY plane.
class CMaCircle : public CMaCurve {
public:
    explicit CMaCircle(double theRadius) noexcept : radius(theRadius) {}

    /// The circle with the smallest sum of squared distances to the points, in the length unit of the points.
    ///
    /// All six unknowns are fitted together. (A plane first and then a circle in it is another answer, and on short
    /// noisy arcs a wrong one.) Centre and radius are right to some 20 times what the rounding of the coordinates alone
    /// can do to them; coordinates may have any finite size. Where points hardly form a circle, several circles may be
    /// better than all their neighbours: the one found is then nearly always, but not surely, the best.
    ///
    /// `iterationLimit` bounds the steps of the iteration, each of which reads the points once. A handful is usual,
    /// hundreds are taken where the points hardly form a circle.
    ///
    /// Throws GeometryError, the circle unchanged:
    /// - Impossible, when there are fewer than three distinct points, when all lie on one line as far as rounding lets
    ///   one tell, when no circle is found that fits better than a straight line, or when a coordinate is not finite;
    /// - LimitReached, when the limit is not positive or is used up.
    void Fit(const CMaPointArray& points, long iterationLimit);

    CMaPoint GetCentre() const noexcept { return centre; }
    /// Unit normal of the circle's plane. Its sign is arbitrary: callers must not depend on it.
    CMaVector GetNormal() const noexcept { return normal; }
    double GetRadius() const noexcept { return radius; }

    void Rotate(double angleDegrees, EAxisType axis) override;
    void Rotate(double angleDegrees, const CMaVector& direction) override;
    void Rotate(double angleDegrees, EAxisType axis, const CMaPoint& about) override;
    void Rotate(double angleDegrees, const CMaVector& direction, const CMaPoint& about) override;
    void Translate(double x, double y, double z) override;
    void Translate(const CMaPoint& offset) override;

private:
    CMaPoint centre{0.0, 0.0, 0.0};
    CMaVector normal{0.0, 0.0, 1.0};
    double radius;
};
