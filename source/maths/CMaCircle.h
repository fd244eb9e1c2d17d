#pragma once

#include "maths/CMaCurve.h"

class CMaPointArray;

/// A circle in space: a centre, a plane and a radius. Before any fit it lies about the origin in the XY plane.
class CMaCircle : public CMaCurve {
public:
    explicit CMaCircle(double theRadius) noexcept : radius(theRadius) {}

    /// The circle with the smallest sum of squared distances to the points: the geometric (orthogonal distance) fit.
    /// All six unknowns are fitted together. (A plane fit followed by a circle fit in that plane gives another centre:
    /// 7 mm away, RMS, for 40 points on 10 degrees of a circle of radius 180 mm with 0.1 mm of noise.)
    ///
    /// Accuracy: centre, radius and normal are right to 20 times the effect of rounding the coordinates by half a unit
    /// in the last place, plus 4 roundings of the result. Example: 40 points on 90 degrees of a circle of radius 180
    /// mm, 1 um of noise, coordinates of up to 1200 mm: the centre is within 3e-13 mm, the normal within
    /// 1e-15 rad. Where the noise exceeds a tenth of the sagitta, the bound is 1e-9 of the length unit. The same
    /// points give the same bits with every processor and every width of its vector registers.
    ///
    /// While the noise is below a tenth of the sagitta, the result is the global minimum. Beyond, there can be several
    /// local minima, and the result is nearly always, but not always, the lowest.
    ///
    /// `evaluationLimit` limits the evaluations of the sum of squares. Clear arcs need 3 to 10 evaluations, points that
    /// hardly form a circle some hundreds. No fit needs more than 5,000.
    ///
    /// Throws GeometryError, the circle unchanged:
    /// - Impossible, when there are fewer than three distinct points, when the points lie on one line to within the
    ///   rounding of their coordinates, when no circle fits better than a straight line, when the centre or the radius
    ///   is beyond the largest double, or when a coordinate is not finite. Coordinates may have any finite size;
    /// - LimitReached, when the limit is not positive or is used up.
    void Fit(const CMaPointArray& points, long evaluationLimit);

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
