#pragma once

#include "tools/check/obstacles/Triangle.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace qmv40::check::obstacles {

/// An obstacle. Machine coordinates, millimetres.
class Solid {
public:
    Solid() = default;
    Solid(const Solid&) = delete;
    Solid& operator=(const Solid&) = delete;
    virtual ~Solid() = default;

    /// The distance from the surface to a triangle, which may be a line or a point; 0 or less when they meet. When it
    /// is `enough` or more, `enough` may be returned instead.
    virtual double DistanceTo(const Triangle& triangle, double enough) const = 0;
    /// The lower limit of `DistanceTo`.
    virtual double SmallestDistance() const = 0;
    /// True when the point lies inside and its distance to the surface is positive there. False when `DistanceTo` is
    /// already negative inside, as for Table and Rod.
    virtual bool Contains(const model::Vector3& point) const = 0;
};

/// Everything below a height.
class Table : public Solid {
public:
    explicit Table(double theHeight) : height(theHeight) {}
    double DistanceTo(const Triangle& triangle, double enough) const override {
        return std::min(std::min({triangle.a.z, triangle.b.z, triangle.c.z}) - height, enough);
    }
    double SmallestDistance() const override { return -std::numeric_limits<double>::infinity(); }
    bool Contains(const model::Vector3& /*point*/) const override { return false; } // there its distance is negative

private:
    double height;
};

/// All points within a radius of a line segment: a rod with round ends, or a ball.
class Rod : public Solid {
public:
    Rod(const model::Vector3& theFrom, const model::Vector3& theTo, double theRadius)
        : line{theFrom, theTo, theTo}, radius(theRadius) {}
    double DistanceTo(const Triangle& triangle, double enough) const override {
        return std::min(Distance(triangle, line) - radius, enough);
    }
    double SmallestDistance() const override { return -radius; }
    bool Contains(const model::Vector3& /*point*/) const override { return false; } // there its distance is negative

private:
    Triangle line;
    double radius;
};

/// A solid and its name in findings.
struct Obstacle {
    std::string name;
    std::string description; ///< "box", "cylinder", "mesh of 12000 triangles, closed"
    std::shared_ptr<const Solid> solid;
    std::shared_ptr<const std::vector<Triangle>> surface; ///< for drawings: the triangles of the solid
};

} // namespace qmv40::check::obstacles
