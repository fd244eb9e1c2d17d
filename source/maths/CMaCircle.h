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
    /// noisy arcs a wrong one.) Centre, radius and normal are right to 20 times what rounding the points' coordinates
    /// by half a unit in the last place can do to them, and to 4 roundings of the result; where the points form no
    /// clear arc, to 1e-9 of the unit. Coordinates may have any finite size. Points that stray from the circle by less
    /// than a tenth of the arc's height get the best of all circles. Otherwise several may be better than all their
    /// neighbours, and the one found is nearly always, but not surely, the best. The result is the same on every
    /// machine.
    ///
    /// `iterationLimit` bounds the steps of the iteration, each of which reads the points once or twice. A handful is
    /// usual, hundreds are taken where the points hardly form a circle, never more than 5,000.
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
