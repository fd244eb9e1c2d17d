#pragma once

#include "tools/model/Vector3.h"

namespace qmv40::motion {

/// The way of one point in one move, in closed form: a straight line, or an arc about an axis. A fraction of 0 is its
/// start, 1 its end. Millimetres, degrees.
class Path {
public:
    static Path Straight(const model::Vector3& start, const model::Vector3& end);
    /// Right-handed about the axis through `centre` along `unitAxis`; whole turns count.
    static Path Arc(const model::Vector3& start, const model::Vector3& centre, const model::Vector3& unitAxis,
                    double degrees);

    bool IsArc() const { return isArc; }
    model::Vector3 At(double fraction) const;
    model::Vector3 Start() const { return At(0.0); }
    model::Vector3 End() const { return At(1.0); }
    /// Of an arc; 0 for a straight line.
    double Radius() const;
    /// Of an arc, right-handed; 0 for a straight line.
    double Degrees() const;

    /// How close the path comes to a point.
    double SmallestDistanceTo(const model::Vector3& point) const;

    struct Range {
        double smallest;
        double largest;
    };
    /// Between which values the coordinate along the unit vector `direction` runs.
    Range RangeAlong(const model::Vector3& direction) const;

    /// The same way, made by a point that stands off by `offset`.
    Path ShiftedBy(const model::Vector3& offset) const;

private:
    Path(const model::Vector3& theOrigin, const model::Vector3& theFirst, const model::Vector3& theSecond,
         double theSweep, bool arc)
        : origin(theOrigin), first(theFirst), second(theSecond), sweep(theSweep), isArc(arc) {}

    model::Vector3 AtAngle(double angle) const;
    bool Passes(double angle) const;

    // Straight: origin + first * fraction. Arc: origin + first * cos + second * sin of fraction * sweep.
    model::Vector3 origin;
    model::Vector3 first;
    model::Vector3 second;
    double sweep; ///< radians, signed
    bool isArc;
};

} // namespace qmv40::motion
