#include "maths/CQuaternion.h"

#include "maths/ElementaryFunctions.h"
#include "maths/RaisingGeometryErrors.h"

#include <tuple>

using namespace qmv40;

CQuaternion::CQuaternion() : rotationMatrix(3, 3) {
    const ErrorContext context{L"CQuaternion::CQuaternion", L"Error initialising matrix with default data."};
    RaisingGeometryErrors(context, [&] {
        for (int i = 0; i < 3; ++i) rotationMatrix.SetElement(i, i, 1.0);
    });
}

void CQuaternion::InitialiseFromAngleAndDirection(double angleRadians, const CMaVector& direction) {
    const ErrorContext context{L"CQuaternion::InitialiseFromAngleAndDirection",
                               L"Error extracting data from direction vector"};
    RaisingGeometryErrors(context, [&] {
        const double dx = direction[0], dy = direction[1], dz = direction[2];
        const double sine = Sine(0.5 * angleRadians);
        w = Cosine(0.5 * angleRadians);
        x = dx * sine;
        y = dy * sine;
        z = dz * sine;
    });
    CalculateRotationMatrix();
}

void CQuaternion::SetComponents(double newW, double newX, double newY, double newZ) {
    w = newW;
    x = newX;
    y = newY;
    z = newZ;
    CalculateRotationMatrix();
}

void CQuaternion::CalculateRotationMatrix() {
    // The source names the usual caller instead of this operation: required.
    const ErrorContext context{L"CQuaternion::InitialiseFromAngleAndDirection", L"Error calculating rotation matrix"};
    RaisingGeometryErrors(context, [&] {
        rotationMatrix.SetElement(0, 0, x * x - y * y - z * z + w * w);
        rotationMatrix.SetElement(1, 1, -x * x + y * y - z * z + w * w);
        rotationMatrix.SetElement(2, 2, -x * x - y * y + z * z + w * w);
        rotationMatrix.SetElement(0, 1, 2.0 * (x * y - z * w));
        rotationMatrix.SetElement(1, 0, 2.0 * (x * y + z * w));
        rotationMatrix.SetElement(0, 2, 2.0 * (x * z + y * w));
        rotationMatrix.SetElement(2, 0, 2.0 * (x * z - y * w));
        rotationMatrix.SetElement(1, 2, 2.0 * (y * z - x * w));
        rotationMatrix.SetElement(2, 1, 2.0 * (y * z + x * w));
    });
}

std::unique_ptr<CQuaternion> CQuaternion::Multiply(const CQuaternion& other) const {
    const auto& [a1, a2, a3, a4] = std::tie(w, x, y, z);
    const auto& [b1, b2, b3, b4] = std::tie(other.w, other.x, other.y, other.z);
    auto product = std::make_unique<CQuaternion>();
    product->SetComponents(a1 * b1 - a2 * b2 - a3 * b3 - a4 * b4, a1 * b2 + a2 * b1 + a3 * b4 - a4 * b3,
                           a1 * b3 - a2 * b4 + a3 * b1 + a4 * b2, a1 * b4 + a2 * b3 - a3 * b2 + a4 * b1);
    return product;
}

std::unique_ptr<CMaVector> CQuaternion::RotateVector(const CMaVector& v) const {
    return std::make_unique<CMaVector>(rotationMatrix * v);
}
