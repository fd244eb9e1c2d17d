#pragma once

#include "maths/CMaMatrix.h"
#include "maths/CMaVector.h"

#include <memory>

/// A rotation, stored as a quaternion and as its 3 x 3 matrix. Right-handed: a positive angle about +Z turns +X
/// towards +Y. The product q1 x q2 applies q2 first.
///
/// It should be a unit quaternion, but is never normalised (required): with a direction whose length is not 1, the
/// rotation scales vectors too, and a zero direction gives a diagonal matrix with the squared cosine of half the angle.
/// Angles are in radians. A failure of the vector geometry is raised as a code (RaiseError.h). If memory runs out,
/// std::bad_alloc is thrown.
class CQuaternion {
public:
    /// The rotation that leaves every vector as it is.
    CQuaternion();
    CQuaternion(const CQuaternion&) = default;
    CQuaternion& operator=(const CQuaternion&) = default;
    virtual ~CQuaternion() = default;

    void InitialiseFromAngleAndDirection(double angleRadians, const CMaVector& direction);
    void SetComponents(double newW, double newX, double newY, double newZ);
    /// Computes the matrix from the components.
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
