#include "tools/check/obstacles/Mesh.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numbers>

namespace qmv40::check::obstacles {

namespace {

using model::Vector3;

// A node with so few triangles is not divided.
constexpr std::uint32_t fewTriangles = 4;

Vector3 Smaller(const Vector3& a, const Vector3& b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)};
}

Vector3 Larger(const Vector3& a, const Vector3& b) {
    return {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)};
}

/// In a closed surface each edge belongs to two triangles. Corners with equal coordinates are one corner.
bool IsEveryEdgeShared(const std::vector<Triangle>& triangles) {
    using Corner = std::array<double, 3>;
    std::vector<std::array<Corner, 2>> edges;
    edges.reserve(3 * triangles.size());
    const auto corner = [](const Vector3& point) { return Corner{point.x + 0.0, point.y + 0.0, point.z + 0.0}; };
    for (const Triangle& triangle : triangles) {
        const std::array corners{corner(triangle.a), corner(triangle.b), corner(triangle.c)};
        for (std::size_t i = 0; i < 3; ++i) {
            edges.push_back({std::min(corners[i], corners[(i + 1) % 3]), std::max(corners[i], corners[(i + 1) % 3])});
        }
    }
    std::ranges::sort(edges);
    for (auto edge = edges.begin(); edge != edges.end();) {
        const auto next = std::find_if(edge, edges.end(), [&](const auto& other) { return other != *edge; });
        if (next - edge != 2) return false;
        edge = next;
    }
    return true;
}

} // namespace

Mesh::Mesh(std::vector<Triangle> theTriangles)
    : triangles(std::move(theTriangles)), isClosed(IsEveryEdgeShared(triangles)) {
    const auto count = static_cast<std::uint32_t>(triangles.size());
    nodes.reserve(2 * triangles.size());
    nodes.push_back({BoxOf(0, count), 0, count, 0});
    for (std::uint32_t i = 0; i < nodes.size(); ++i) Divide(i);
}

Mesh::Box Mesh::BoxOf(const Triangle& triangle) {
    return {Smaller(Smaller(triangle.a, triangle.b), triangle.c), Larger(Larger(triangle.a, triangle.b), triangle.c)};
}

Mesh::Box Mesh::BoxOf(std::uint32_t first, std::uint32_t last) const {
    Box box = BoxOf(triangles[first]);
    for (std::uint32_t i = first + 1; i < last; ++i) {
        const Box next = BoxOf(triangles[i]);
        box = {Smaller(box.smallest, next.smallest), Larger(box.largest, next.largest)};
    }
    return box;
}

void Mesh::Divide(std::uint32_t node) {
    const auto [box, first, last, left] = nodes[node];
    if (last - first <= fewTriangles) return;
    const Vector3 size = box.largest - box.smallest;
    const std::size_t axis = size.x >= size.y && size.x >= size.z ? 0 : size.y >= size.z ? 1 : 2;
    const std::uint32_t middle = first + (last - first) / 2;
    const auto twiceTheMiddle = [axis](const Triangle& triangle) {
        const Box around = BoxOf(triangle);
        return around.smallest[axis] + around.largest[axis];
    };
    std::ranges::nth_element(triangles.begin() + first, triangles.begin() + middle, triangles.begin() + last, {},
                             twiceTheMiddle);
    nodes[node].left = static_cast<std::uint32_t>(nodes.size());
    nodes.push_back({BoxOf(first, middle), first, middle, 0});
    nodes.push_back({BoxOf(middle, last), middle, last, 0});
}

double Mesh::SquaredGap(const Box& left, const Box& right) {
    const Vector3 gap = Larger(Larger(left.smallest - right.largest, right.smallest - left.largest), {0.0, 0.0, 0.0});
    return model::Dot(gap, gap);
}

double Mesh::DistanceTo(const Triangle& triangle, double enough) const {
    if (!(enough > 0.0)) return enough;
    const Box box = BoxOf(triangle);
    double smallest = enough;
    std::vector<std::pair<double, std::uint32_t>> stack{{SquaredGap(box, nodes[0].box), 0}};
    while (!stack.empty()) {
        const auto [gap, index] = stack.back();
        stack.pop_back();
        if (gap >= smallest * smallest) continue;
        const Node& node = nodes[index];
        if (node.left == 0) {
            for (std::uint32_t i = node.first; i < node.last; ++i) {
                if (SquaredGap(box, BoxOf(triangles[i])) >= smallest * smallest) continue;
                smallest = std::min(smallest, Distance(triangle, triangles[i]));
            }
            continue;
        }
        // The nearer half goes on top, so that it is searched first.
        std::pair<double, std::uint32_t> near{SquaredGap(box, nodes[node.left].box), node.left};
        std::pair<double, std::uint32_t> far{SquaredGap(box, nodes[node.left + 1].box), node.left + 1};
        if (far.first < near.first) std::swap(near, far);
        stack.push_back(far);
        stack.push_back(near);
    }
    return smallest;
}

bool Mesh::IsCrossed(const Box& box, const Vector3& origin, const Vector3& direction) {
    double from = 0.0;
    double to = std::numeric_limits<double>::infinity();
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double one = (box.smallest[axis] - origin[axis]) / direction[axis];
        const double other = (box.largest[axis] - origin[axis]) / direction[axis];
        from = std::max(from, std::min(one, other));
        to = std::min(to, std::max(one, other));
    }
    return from <= to;
}

int Mesh::Crossings(const Vector3& origin, const Vector3& direction) const {
    int crossings = 0;
    std::vector<std::uint32_t> stack{0};
    while (!stack.empty()) {
        const Node& node = nodes[stack.back()];
        stack.pop_back();
        if (!IsCrossed(node.box, origin, direction)) continue;
        if (node.left != 0) {
            stack.push_back(node.left);
            stack.push_back(node.left + 1);
            continue;
        }
        for (std::uint32_t i = node.first; i < node.last; ++i) {
            if (CrossedAt(triangles[i], origin, direction) > 0.0) ++crossings;
        }
    }
    return crossings;
}

bool Mesh::Contains(const Vector3& point) const {
    if (!isClosed || SquaredGap(nodes[0].box, {point, point}) > 0.0) return false;
    // A ray through an edge may be counted twice or not at all. Three oblique rays therefore decide by majority.
    const std::array directions{Vector3{0.3714, 0.2293, 0.8997}, Vector3{-0.6127, 0.7411, 0.2744},
                                Vector3{0.1733, -0.5119, -0.8414}};
    const auto isOdd = [&](const Vector3& direction) { return Crossings(point, direction) % 2 == 1; };
    return std::ranges::count_if(directions, isOdd) >= 2;
}

std::vector<Triangle> BoxSurface(const Vector3& centre, const Vector3& size) {
    const auto corner = [&](int index) {
        return centre + Vector3{(index & 1 ? 0.5 : -0.5) * size.x, (index & 2 ? 0.5 : -0.5) * size.y,
                                (index & 4 ? 0.5 : -0.5) * size.z};
    };
    constexpr std::array<std::array<int, 4>, 6> faces{
        {{0, 2, 6, 4}, {1, 5, 7, 3}, {0, 4, 5, 1}, {2, 3, 7, 6}, {0, 1, 3, 2}, {4, 6, 7, 5}}};
    std::vector<Triangle> surface;
    for (const auto& face : faces) {
        surface.push_back({corner(face[0]), corner(face[1]), corner(face[2])});
        surface.push_back({corner(face[0]), corner(face[2]), corner(face[3])});
    }
    return surface;
}

std::vector<Triangle> CylinderSurface(const Vector3& from, const Vector3& to, double radius) {
    // The edges of a prism whose faces touch the cylinder are outside it by radius * (1 / cos(half a side's angle) -
    // 1).
    const int sides =
        std::max(12, static_cast<int>(std::ceil(std::numbers::pi / std::acos(radius / (radius + largestExcess)))));
    const double toEdge = radius / std::cos(std::numbers::pi / sides);
    const Vector3 axis = model::Unit(to - from);
    const Vector3 aside = std::abs(axis.z) < 0.9 ? Vector3{0.0, 0.0, 1.0} : Vector3{1.0, 0.0, 0.0};
    const Vector3 right = model::Unit(model::Cross(axis, aside));
    const Vector3 up = model::Cross(axis, right);
    const auto spoke = [&](int i) {
        const double angle = 2.0 * std::numbers::pi * (i % sides) / sides;
        return toEdge * (std::cos(angle) * right + std::sin(angle) * up);
    };
    std::vector<Triangle> surface;
    for (int i = 0; i < sides; ++i) {
        const Vector3 here = spoke(i);
        const Vector3 next = spoke(i + 1);
        surface.push_back({from, from + here, from + next});
        surface.push_back({to, to + next, to + here});
        surface.push_back({from + here, to + here, to + next});
        surface.push_back({from + here, to + next, from + next});
    }
    return surface;
}

} // namespace qmv40::check::obstacles
