#pragma once

#include "maths/CMaGeometry.h"
#include "maths/GeometryError.h"

class CMaPoint;

/// Three doubles: a direction, an offset or a position, in the caller's unit. Index 0 is x, 1 is y, 2 is z.
///
/// Every component of a result is computed by the written formula in the written order, one rounding for each
/// operation. Infinities and not-a-number are treated as IEEE arithmetic does. There is no subtraction: a - b is
/// a + (b * -1.0). An index outside 0 to 2 throws GeometryError (Impossible).
class CMaVector : public CMaGeometry {
public:
    CMaVector(double x, double y, double z) noexcept : components{x, y, z} {}

    double operator[](int index) const { return components[Checked(index)]; }
    double& operator[](int index) { return components[Checked(index)]; }

    CMaVector operator+(const CMaVector& other) const noexcept {
        return {components[0] + other.components[0], components[1] + other.components[1],
                components[2] + other.components[2]};
    }
    CMaVector operator*(double factor) const noexcept {
        return {components[0] * factor, components[1] * factor, components[2] * factor};
    }
    /// Cross product, this x other.
    CMaVector operator*(const CMaVector& other) const noexcept {
        const double* const a = components;
        const double* const b = other.components;
        return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    }
    /// Dot product.
    double operator%(const CMaVector& other) const noexcept {
        return components[0] * other.components[0] + components[1] * other.components[1] +
               components[2] * other.components[2];
    }

    /// Euclidean length to within two units in the last place, for components of any size: no intermediate
    /// value overflows or underflows. The zero vector gives 0.0. An infinite component gives infinity; otherwise a
    /// not-a-number component gives not-a-number.
    double Magnitude() const noexcept;

    /// Turns this vector in place about the coordinate axis through `centre`, right-handed.
    ///
    /// The component along the axis keeps its bits, and a rotation by 0 keeps all bits. Rotations by multiples of 90
    /// degrees about the origin are exact, also beyond 360 degrees. Otherwise each component is right to 4 units in the
    /// last place of the distance from the axis (and of the centre's coordinates). An angle that is not finite gives
    /// not-a-number. An axis other than X, Y and Z throws GeometryError (Impossible).
    void Rotate(double angleDegrees, EAxisType axis, const CMaPoint& centre);

private:
    static int Checked(int index) {
        if (index < 0 || index > 2) throw qmv40::GeometryError(qmv40::GeometryError::Reason::Impossible);
        return index;
    }

    double components[3];
};

namespace qmv40 {

/// The vector of length 1 along `v`, which is neither zero nor so small that 1 / its length overflows, nor so large
/// that this underflows.
inline CMaVector Unit(const CMaVector& v) noexcept { return v * (1.0 / v.Magnitude()); }

} // namespace qmv40
