#pragma once

#include "maths/fit/ScaledPoints.h"
#include "maths/fit/SymmetricEigen.h"

#include <optional>

namespace qmv40::fit {

/// A circle, described at its apex: the point of the circle in the middle of the measured arc.
///
/// On a short arc the centre is far away from the points, and the differences of distances from the centre have fewer
/// digits: on an arc of 1 degree, 4 of 16 digits are lost. Distances from the apex keep all digits.
struct ApexCircle {
    CMaVector apex;
    CMaVector outward; ///< unit vector from the centre to the apex
    CMaVector tangent; ///< normal x outward
    CMaVector normal;
    double radius;

    CMaVector Centre() const noexcept { return apex + outward * -radius; }
};

/// The six unknowns: small changes of an ApexCircle. A short arc determines each of them separately. (The coordinates
/// of the centre and the radius would be strongly correlated.)
enum Unknown : std::size_t {
    apexOutward,  ///< shift of the apex away from the centre
    turnInPlane,  ///< rotation about the normal at the apex, radians
    curvature,    ///< relative change of 1 / radius; the apex does not move
    apexAcross,   ///< shift of the apex along the normal
    tiltForward,  ///< rotation about the tangent at the apex, radians
    tiltSideways, ///< rotation about the line from the centre to the apex, radians
};

using Vector6 = std::array<double, 6>;
using Matrix6 = SquareMatrix<6>;

/// The circle after the `change` of its six unknowns.
ApexCircle Changed(const ApexCircle& circle, const Vector6& change) noexcept;

/// The largest of the six changes; lengths are relative to the radius.
double SizeOf(const Vector6& change, double radius) noexcept;

/// The objective of the fit at one circle: half the sum of g^2 + h^2 over the points, its gradient and its Hessian with
/// respect to the six unknowns. h is the distance of a point from the plane of the circle. g is its distance from the
/// axis minus the radius.
struct CircleObjective {
    /// One pass over the points. The Hessian is the Gauss-Newton approximation J'J of the normal equations: it omits
    /// the second derivatives of g and h.
    CircleObjective(const ApexCircle& circle, const ScaledPoints& points) noexcept;

    /// Adds the second derivatives in one more pass. The exact Hessian can be indefinite.
    void MakeHessianExact(const ApexCircle& circle, const ScaledPoints& points) noexcept;

    /// Solves (H + damping D) change = -gradient, where H is the Hessian and D its diagonal (Marquardt's scaling).
    /// Returns nothing when that matrix is not positive definite.
    std::optional<Vector6> Step(double damping) const noexcept;

    double value;
    Vector6 gradient;
    Matrix6 hessian{};

private:
    /// The Gauss-Newton Hessian is block diagonal: the first three unknowns (in the plane) and the last three (out of
    /// it) decouple. The exact one is not.
    bool isExact = false;
};

} // namespace qmv40::fit
