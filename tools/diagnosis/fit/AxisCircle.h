#pragma once

#include "maths/CMaPointArray.h"
#include "tools/model/Vector3.h"

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace qmv40::diagnosis::fit {

/// The residuals of a point, and its place on the circle.
struct CirclePoint {
    double polarAngle; ///< degrees, right-handed about the normal, from an arbitrary start
    double radial;     ///< outward, off the circle
    double outOfPlane; ///< along the normal, off the circle's plane
};

/// The least-squares circle through one set, and its covariances.
struct AxisCircle {
    /// The six unknowns in the order of `covariance`: the centre along `along`, `across` and `normal`, the turn of the
    /// normal towards `along` and towards `across` (radians), the radius.
    static constexpr std::size_t unknowns = 6;
    using Covariance = std::vector<std::vector<double>>;

    model::Vector3 centre;
    model::Vector3 normal; ///< its sense is arbitrary
    model::Vector3 along;  ///< with `across` and `normal` a right-handed frame
    model::Vector3 across;
    double radius;
    std::vector<CirclePoint> points;
    double arcCovered;     ///< degrees
    double sumOfSquares;   ///< of all radial and out-of-plane residuals
    Covariance covariance; ///< for noise of standard deviation 1 in every coordinate of a point; 0 when undetermined

    /// Observations (each point has two residuals) minus unknowns.
    int DegreesOfFreedom() const { return 2 * static_cast<int>(points.size()) - static_cast<int>(unknowns); }
    double Rms() const;
};

model::Vector3 VectorOf(const CMaVector& v);
CMaPointArray PointArrayOf(std::span<const model::Vector3> points);

/// Throws GeometryError when the points determine no circle.
AxisCircle AxisCircleThrough(std::span<const model::Vector3> points);

/// Empty when the points determine no circle.
std::optional<AxisCircle> FitAxisCircle(std::span<const model::Vector3> points);

/// A circle after one of its points was left out, to first order.
struct CircleWithout {
    model::Vector3 centre;
    model::Vector3 normal;
    double gain; ///< by how much the sum of squares is smaller
};
CircleWithout WithoutPoint(const AxisCircle& circle, std::size_t index);

/// Degrees: a whole turn minus the widest gap between neighbouring polar angles. At least one angle is needed; the
/// order does not matter.
double ArcCovered(std::vector<double> polarAngles);

} // namespace qmv40::diagnosis::fit
