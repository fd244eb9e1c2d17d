#pragma once

#include "maths/CMaMatrix.h"
#include "maths/CMaVector.h"

#include <memory>

/// A rotation, kept as a quaternion and as the 3 x 3 matrix of it. Right-handed: a positive angle about +Z turns +X
/// towards +Y. The product q1 x q2 applies q2 first.
///
/// Used as a unit quaternion but never normalised: a direction of another length than 1 scales as well as turns, and a
/// zero direction gives the diagonal matrix of the squared cosine of half the angle. Angles are in radians here.
/// A failure of the vector geometry is raised as a code (RaiseError.h); memory that runs out is std::bad_alloc.
class CQuaternion {
public:
    /// The rotation that leaves every vector as it is.
    CQuaternion();
    CQuaternion(const CQuaternion&) = default;
    CQuaternion& operator=(const CQuaternion&) = default;
    virtual ~CQuaternion() = default;

    void InitialiseFromAngleAndDirection(double angleRadians, const CMaVector& direction);
    void SetComponents(double newW, double newX, double newY, double newZ);
    /// Brings the matrix up to date with the components.
    void CalculateRotationMatrix();

    /// The Hamilton product this x other.
    std::unique_ptr<CQuaternion> Multiply(const CQuaternion& other) const;
    std::unique_ptr<CMaVector> RotateVector(const CMaVector& v) const;

    double GetW() const noexcept { return w; }
    double GetX() const noexcept { return x; }
    double GetY() const noexcept { return y; }
    double GetZ() const noexcept { return z; }

private:
    double w = 1.0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    CMaMatrix rotationMatrix;
};
