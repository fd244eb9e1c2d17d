#include "tools/check/obstacles/Triangle.h"

#include <algorithm>
#include <array>
#include <limits>

namespace qmv40::check::obstacles {

namespace {

using model::Cross;
using model::Dot;
using model::Vector3;

struct Edge {
    Vector3 from;
    Vector3 to;
};

std::array<Edge, 3> EdgesOf(const Triangle& triangle) {
    return {Edge{triangle.a, triangle.b}, Edge{triangle.b, triangle.c}, Edge{triangle.c, triangle.a}};
}

double SquaredDistanceOfLines(const Vector3& a, const Vector3& b, const Vector3& c, const Vector3& d) {
    const Vector3 first = b - a;
    const Vector3 second = d - c;
    const Vector3 between = a - c;
    const double ff = Dot(first, first);
    const double ss = Dot(second, second);
    const double fs = Dot(first, second);
    const double fb = Dot(first, between);
    const double sb = Dot(second, between);
    const double denominator = ff * ss - fs * fs;
    // At first the second line has no ends. Every place on a parallel first line is then equally near to it: its start
    // is taken, also when it has no length.
    double s = denominator > 0.0 ? std::clamp((fs * sb - fb * ss) / denominator, 0.0, 1.0) : 0.0;
    double t = ss > 0.0 ? (fs * s + sb) / ss : 0.0;
    if (t < 0.0 || t > 1.0 || ss == 0.0) {
        t = std::clamp(t, 0.0, 1.0);
        s = ff > 0.0 ? std::clamp((fs * t - fb) / ff, 0.0, 1.0) : 0.0;
    }
    const Vector3 gap = between + s * first - t * second;
    return Dot(gap, gap);
}

/// A triangle with the values that are used repeatedly.
struct Face {
    explicit Face(const Triangle& theTriangle)
        : triangle(theTriangle), normal(Cross(theTriangle.b - theTriangle.a, theTriangle.c - theTriangle.a)),
          squaredNormal(Dot(normal, normal)) {}

    /// True when the point lies straight above or below the triangle.
    bool IsOver(const Vector3& point) const {
        return std::ranges::all_of(EdgesOf(triangle), [&](const Edge& edge) {
            return !(Dot(Cross(edge.to - edge.from, point - edge.from), normal) < 0.0);
        });
    }

    const Triangle& triangle;
    Vector3 normal;
    double squaredNormal;
};

/// The smaller one of `smallest` and the squared distances of those corners of another triangle that lie straight above
/// or below the face; 0 when an edge of the other triangle goes through the face.
double SquaredDistanceToFace(const Face& face, const Triangle& other, double smallest) {
    if (face.squaredNormal == 0.0) return smallest; // a line or a point consists of its edges
    const std::array points{other.a, other.b, other.c};
    std::array<double, 3> heights{};
    for (std::size_t i = 0; i < 3; ++i) {
        heights[i] = Dot(points[i] - face.triangle.a, face.normal);
        const double squared = heights[i] * heights[i] / face.squaredNormal;
        if (squared < smallest && face.IsOver(points[i])) smallest = squared;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const double from = heights[i];
        const double to = heights[(i + 1) % 3];
        if ((from < 0.0) == (to < 0.0) || from == to) continue;
        const Vector3 crossing = points[i] + (from / (from - to)) * (points[(i + 1) % 3] - points[i]);
        if (face.IsOver(crossing)) return 0.0;
    }
    return smallest;
}

} // namespace

double Distance(const Triangle& left, const Triangle& right) {
    double smallest = std::numeric_limits<double>::infinity();
    for (const Edge& ours : EdgesOf(left)) {
        for (const Edge& theirs : EdgesOf(right)) {
            smallest = std::min(smallest, SquaredDistanceOfLines(ours.from, ours.to, theirs.from, theirs.to));
        }
    }
    smallest = SquaredDistanceToFace(Face(left), right, smallest);
    return std::sqrt(SquaredDistanceToFace(Face(right), left, smallest));
}

double CrossedAt(const Triangle& triangle, const Vector3& origin, const Vector3& direction) {
    const Vector3 first = triangle.b - triangle.a;
    const Vector3 second = triangle.c - triangle.a;
    const Vector3 across = Cross(direction, second);
    const double determinant = Dot(first, across);
    if (determinant == 0.0) return -1.0;
    const Vector3 offset = origin - triangle.a;
    const double u = Dot(offset, across) / determinant;
    const Vector3 along = Cross(offset, first);
    const double v = Dot(direction, along) / determinant;
    if (u < 0.0 || v < 0.0 || u + v > 1.0) return -1.0;
    return Dot(second, along) / determinant;
}

} // namespace qmv40::check::obstacles
