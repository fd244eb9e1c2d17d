#pragma once

#include "tools/model/Vector3.h"

namespace qmv40::model {

/// The path of one point in one move, in closed form: a straight line, or an arc about an axis. Fraction 0 is its
/// start, 1 its end. Millimetres, degrees.
class Path {
public:
    static Path Straight(const Vector3& start, const Vector3& end);
    /// Right-handed about the axis through `centre` along `unitAxis`. The angle can be more than 360 degrees.
    static Path Arc(const Vector3& start, const Vector3& centre, const Vector3& unitAxis, double degrees);

    bool IsArc() const { return isArc; }
    Vector3 At(double fraction) const;
    Vector3 Start() const { return At(0.0); }
    Vector3 End() const { return At(1.0); }
    double Length() const;
    /// Of an arc; 0 for a straight line.
    double Radius() const;
    /// Of an arc, right-handed; 0 for a straight line.
    double Degrees() const;
    /// The point of an arc's axis that lies in its plane.
    const Vector3& Centre() const { return origin; }
    /// The direction of an arc's axis, of unit length; no direction for an arc without a radius.
    Vector3 Axis() const { return Unit(Cross(first, second)); }

    /// The fraction at which the path comes closest to a point. For a whole turn that begins and ends there, either 0
    /// or 1.
    double NearestFraction(const Vector3& point) const;
    /// How close the path comes to a point.
    double SmallestDistanceTo(const Vector3& point) const;

    struct Range {
        double smallest;
        double largest;
    };
    /// The interval of the coordinate along the unit vector `direction`.
    Range RangeAlong(const Vector3& direction) const;

    /// The path of a point at a fixed `offset` from this one.
    Path ShiftedBy(const Vector3& offset) const;

private:
    Path(const Vector3& theOrigin, const Vector3& theFirst, const Vector3& theSecond, double theSweep, bool arc)
        : origin(theOrigin), first(theFirst), second(theSecond), sweep(theSweep), isArc(arc) {}

    Vector3 AtAngle(double angle) const;
    /// The angle that the arc turns through until it reaches the polar angle `angle`. Radians, 0 to a whole turn.
    double AngleAhead(double angle) const;
    bool Passes(double angle) const;

    // Straight: origin + first * fraction. Arc: origin + first * cos + second * sin of fraction * sweep.
    Vector3 origin;
    Vector3 first;
    Vector3 second;
    double sweep; ///< radians, signed
    bool isArc;
};

} // namespace qmv40::model
