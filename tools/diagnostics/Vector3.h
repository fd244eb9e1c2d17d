#pragma once

#include <cmath>

namespace diagnostics {

/// Three numbers: a point, an offset or a direction. The diagnostics keep an arithmetic of their own, so that what they
/// say about the component's geometry does not come out of the component's geometry.
struct Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline Vector3 operator+(const Vector3& a, const Vector3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vector3 operator-(const Vector3& a, const Vector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vector3 operator-(const Vector3& v) { return {-v.x, -v.y, -v.z}; }
inline Vector3 operator*(double factor, const Vector3& v) { return {factor * v.x, factor * v.y, factor * v.z}; }
inline double Dot(const Vector3& a, const Vector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vector3 Cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vector3& v) { return std::hypot(v.x, v.y, v.z); }
inline Vector3 Unit(const Vector3& v) { return (1.0 / Length(v)) * v; }

/// A turn by an angle, made ready for many vectors.
struct Turn {
    explicit Turn(double radians) : c(std::cos(radians)), s(std::sin(radians)) {}

    double c;
    double s;
};

// Right-handed turns about the coordinate axes.
inline Vector3 AboutX(const Turn& t, const Vector3& v) { return {v.x, t.c * v.y - t.s * v.z, t.s * v.y + t.c * v.z}; }
inline Vector3 AboutY(const Turn& t, const Vector3& v) { return {t.c * v.x + t.s * v.z, v.y, t.c * v.z - t.s * v.x}; }
inline Vector3 AboutZ(const Turn& t, const Vector3& v) { return {t.c * v.x - t.s * v.y, t.s * v.x + t.c * v.y, v.z}; }

} // namespace diagnostics
