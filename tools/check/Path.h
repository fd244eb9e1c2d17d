#pragma once

#include "maths/CMaVector.h"

namespace check {

/// The way of one point in one move, in closed form: a straight line, or an arc about an axis. A fraction of 0 is its
/// start, 1 its end. Millimetres, degrees.
class Path {
public:
    static Path Straight(const CMaVector& start, const CMaVector& end);
    /// Right-handed about the axis through `centre` along `unitAxis`; whole turns count.
    static Path Arc(const CMaVector& start, const CMaVector& centre, const CMaVector& unitAxis, double degrees);

    bool IsArc() const { return isArc; }
    CMaVector At(double fraction) const;
    CMaVector Start() const { return At(0.0); }
    CMaVector End() const { return At(1.0); }
    /// Of an arc; 0 for a straight line.
    double Radius() const;
    /// Of an arc, right-handed; 0 for a straight line.
    double Degrees() const;

    /// How close the path comes to a point.
    double SmallestDistanceTo(const CMaVector& point) const;

    struct Range {
        double smallest;
        double largest;
    };
    /// Between which values the coordinate along the unit vector `direction` runs.
    Range RangeAlong(const CMaVector& direction) const;

    /// The same way, made by a point that stands off by `offset`.
    Path ShiftedBy(const CMaVector& offset) const;

private:
    Path(const CMaVector& theOrigin, const CMaVector& theFirst, const CMaVector& theSecond, double theSweep, bool arc)
        : origin(theOrigin), first(theFirst), second(theSecond), sweep(theSweep), isArc(arc) {}

    CMaVector AtAngle(double angle) const;
    bool Passes(double angle) const;

    // Straight: origin + first * fraction. Arc: origin + first * cos + second * sin of fraction * sweep.
    CMaVector origin;
    CMaVector first;
    CMaVector second;
    double sweep; ///< radians, signed
    bool isArc;
};

} // namespace check
