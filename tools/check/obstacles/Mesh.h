#pragma once

#include "tools/check/obstacles/Solid.h"

#include <cstdint>

namespace qmv40::check::obstacles {

/// A solid given by the triangles of its surface, kept in a tree of boxes. A distance takes some microseconds for any
/// number of triangles. The distances are closed forms of our own, because the tool gives the same answers on Windows,
/// where no library for meshes is installed. A test compares them with such a library.
class Mesh : public Solid {
public:
    /// At least one triangle, all finite.
    explicit Mesh(std::vector<Triangle> theTriangles);

    double DistanceTo(const Triangle& triangle, double enough) const override;
    double SmallestDistance() const override { return 0.0; }
    /// Always false for a surface that is not closed: it has no inside.
    bool Contains(const model::Vector3& point) const override;

    /// Each edge belongs to exactly two triangles.
    bool IsClosed() const { return isClosed; }

private:
    struct Box {
        model::Vector3 smallest;
        model::Vector3 largest;
    };
    /// A node holds the triangles from `first` to the one before `last`. Its halves are the nodes `left` and `left` +
    /// 1, unless it holds few triangles.
    struct Node {
        Box box;
        std::uint32_t first;
        std::uint32_t last;
        std::uint32_t left;
    };

    static Box BoxOf(const Triangle& triangle);
    static double SquaredGap(const Box& left, const Box& right);
    static bool IsCrossed(const Box& box, const model::Vector3& origin, const model::Vector3& direction);
    Box BoxOf(std::uint32_t first, std::uint32_t last) const;
    void Divide(std::uint32_t node);
    int Crossings(const model::Vector3& origin, const model::Vector3& direction) const;

    std::vector<Triangle> triangles;
    std::vector<Node> nodes;
    bool isClosed;
};

// Solids as meshes. A cylinder becomes a prism that contains it and is nowhere more than 0.005 mm larger.
inline constexpr double largestExcess = 0.005; ///< mm

std::vector<Triangle> BoxSurface(const model::Vector3& centre, const model::Vector3& size);
/// `from`, `to`: the centres of its ends, which must differ.
std::vector<Triangle> CylinderSurface(const model::Vector3& from, const model::Vector3& to, double radius);

} // namespace qmv40::check::obstacles
