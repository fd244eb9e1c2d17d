#pragma once

#include "maths/ScaledPoints.h"
#include "maths/SymmetricEigen.h"

#include <optional>

/// A circle as its fit sees it.
///
/// Everything is told from the apex, the point of the circle in the middle of the data, and not from the centre: on a
/// short arc the centre is far away, and differences of distances from it would have lost most of their digits. For the
/// same reason the unknowns are those that a short arc decides one by one (where the apex is, how the arc is turned
/// about it, how strongly it is curved), although what the caller wants is the centre, the normal and the radius.
struct ApexCircle {
    CMaVector apex;
    CMaVector outward; ///< unit vector from the centre to the apex
    CMaVector tangent; ///< normal x outward
    CMaVector normal;
    double radius;

    CMaVector Centre() const noexcept { return apex + outward * -radius; }
};

/// The six unknowns, as small changes of the circle at hand.
enum Unknown : std::size_t {
    apexOutward, ///< the apex, away from the centre
    turnInPlane, ///< about the apex, radians
    curvature,   ///< relative change of 1 / radius, the apex staying
    apexAcross,  ///< the apex, along the normal
    tiltForward, ///< about the tangent at the apex, radians
    tiltSideways ///< about the line from the centre to the apex, radians
};

using Vector6 = std::array<double, 6>;
using Matrix6 = SquareMatrix<6>;

ApexCircle Changed(const ApexCircle& circle, const Vector6& change) noexcept;

/// How large a change is, relative to the radius.
double SizeOf(const Vector6& change, double radius) noexcept;

/// Half the sum of squared distances of the points from the circle: its value, and how it changes with the unknowns.
/// The distance has two parts: h across the circle's plane, and g away from the axis.
struct Expansion {
    /// Reads the points once. The Hessian is Gauss and Newton's: without the terms that vanish where g and h do.
    Expansion(const ApexCircle& circle, const ScaledPoints& points) noexcept;

    /// Adds those terms: the Hessian is exact from here on, and may be indefinite. Reads the points once more.
    void MakeExact(const ApexCircle& circle, const ScaledPoints& points) noexcept;

    /// Solves (H + damping D) change = -gradient, H being the Hessian and D its diagonal. Nothing when that matrix is
    /// not positive definite.
    std::optional<Vector6> Step(double damping) const noexcept;

    double value;
    Vector6 gradient;
    Matrix6 hessian{};

private:
    bool exact = false; ///< else what lies in the plane and what lies across it are decided apart from each other
};
