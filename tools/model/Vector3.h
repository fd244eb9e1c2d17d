#pragma once

#include <cmath>
#include <cstddef>

namespace qmv40::model {

/// Three numbers: a point, an offset or a direction. The model has its own arithmetic, so that what it says about the
/// component's geometry does not come from the component's code.
struct Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    /// By index: 0 is x, 1 is y, 2 is z.
    double& operator[](std::size_t axis) { return axis == 0 ? x : axis == 1 ? y : z; }
    double operator[](std::size_t axis) const { return axis == 0 ? x : axis == 1 ? y : z; }

    bool operator==(const Vector3&) const = default;
};

inline Vector3 operator+(const Vector3& a, const Vector3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vector3 operator-(const Vector3& a, const Vector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vector3 operator-(const Vector3& v) { return {-v.x, -v.y, -v.z}; }
inline Vector3 operator*(double factor, const Vector3& v) { return {factor * v.x, factor * v.y, factor * v.z}; }
inline double Dot(const Vector3& a, const Vector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vector3 Cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline bool IsFinite(const Vector3& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }
/// For machine coordinates. Very large numbers overflow when squared, very small ones underflow.
inline double Length(const Vector3& v) { return std::sqrt(Dot(v, v)); }
/// For numbers of any size, such as those of a mistyped capture.
inline double SafeLength(const Vector3& v) { return std::hypot(v.x, v.y, v.z); }
inline double Distance(const Vector3& a, const Vector3& b) { return Length(b - a); }
inline Vector3 Unit(const Vector3& v) { return (1.0 / Length(v)) * v; }
inline Vector3 SafeUnit(const Vector3& v) { return (1.0 / SafeLength(v)) * v; }

/// The component of `v` perpendicular to the unit vector `direction`.
inline Vector3 Perpendicular(const Vector3& v, const Vector3& direction) { return v - Dot(v, direction) * direction; }

/// A rotation by an angle, prepared for many vectors.
struct Rotation {
    /// An angle of 0 is common, and needs no functions.
    explicit Rotation(double radians)
        : c(radians == 0.0 ? 1.0 : std::cos(radians)), s(radians == 0.0 ? radians : std::sin(radians)) {}

    double c;
    double s;
};

// Right-handed rotations about the coordinate axes
inline Vector3 AboutX(const Rotation& r, const Vector3& v) {
    return {v.x, r.c * v.y - r.s * v.z, r.s * v.y + r.c * v.z};
}
inline Vector3 AboutY(const Rotation& r, const Vector3& v) {
    return {r.c * v.x + r.s * v.z, v.y, r.c * v.z - r.s * v.x};
}
inline Vector3 AboutZ(const Rotation& r, const Vector3& v) {
    return {r.c * v.x - r.s * v.y, r.s * v.x + r.c * v.y, v.z};
}

} // namespace qmv40::model
