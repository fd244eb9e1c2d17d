#pragma once

#include "tools/check/obstacles/Triangle.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace qmv40::check::obstacles {

/// Something that stands around. Machine coordinates, millimetres.
class Solid {
public:
    Solid() = default;
    Solid(const Solid&) = delete;
    Solid& operator=(const Solid&) = delete;
    virtual ~Solid() = default;

    /// From the surface to a triangle, which may be a line or a point; 0 or less where they meet. A distance of
    /// `enough` or more need not be worked out: `enough` is returned for it.
    virtual double DistanceTo(const Triangle& triangle, double enough) const = 0;
    /// What `DistanceTo` never falls below.
    virtual double SmallestDistance() const = 0;
    /// The point lies inside, away from the surface.
    virtual bool Contains(const model::Vector3& point) const = 0;
};

/// All below a height.
class Table : public Solid {
public:
    explicit Table(double theHeight) : height(theHeight) {}
    double DistanceTo(const Triangle& triangle, double enough) const override;
    double SmallestDistance() const override { return -std::numeric_limits<double>::infinity(); }
    bool Contains(const model::Vector3& /*point*/) const override { return false; } // its distance is negative there

private:
    double height;
};

/// All within a radius of a line from point to point: a rod with round ends, or a ball.
class Rod : public Solid {
public:
    Rod(const model::Vector3& theFrom, const model::Vector3& theTo, double theRadius)
        : line{theFrom, theTo, theTo}, radius(theRadius) {}
    double DistanceTo(const Triangle& triangle, double enough) const override;
    double SmallestDistance() const override { return -radius; }
    bool Contains(const model::Vector3& /*point*/) const override { return false; } // its distance is negative there

private:
    Triangle line;
    double radius;
};

/// A solid with what it is called in findings.
struct Obstacle {
    std::string name;
    std::string description; ///< "box", "cylinder", "mesh of 12,000 triangles, closed"
    std::shared_ptr<const Solid> solid;
    std::shared_ptr<const std::vector<Triangle>> surface; ///< for drawing it; none where it is drawn otherwise
};

} // namespace qmv40::check::obstacles
