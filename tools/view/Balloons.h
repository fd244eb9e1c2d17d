#pragma once

#include "tools/view/Svg.h"

namespace qmv40::view {

/// Finds places for the numbers of a drawing. Each number is in a circle (a balloon) that a thin leader connects with
/// its line.

inline constexpr double balloonRadius = 1.75; ///< mm on paper
/// The fraction of a line at which its leader begins. It is not the middle, because a move that returns on the same
/// line would then have the same point.
inline constexpr double placeOfNumber = 0.42;

struct Balloon {
    PaperPoint anchor; ///< the point of the line at which the leader begins
    PaperPoint centre;
};

/// The balloons of one view: apart from each other, inside the view, and off its lines as far as there is space.
class Balloons {
public:
    Balloons(const PaperPoint& theCorner, double theWidth, double theHeight)
        : corner(theCorner), width(theWidth), height(theHeight) {}

    /// A line that balloons should not cover.
    void Avoid(const PaperWay& line);
    /// The place for the number of `line`, which must not be empty.
    Balloon Place(const PaperWay& line);

private:
    /// The sum stops when it reaches `limit`: the result is then only a lower bound, at least `limit`.
    double CostOf(const Balloon& balloon, double limit) const;
    bool IsInside(const PaperPoint& centre) const;

    PaperPoint corner;
    double width;
    double height;
    PaperWay obstacles;
    std::vector<Balloon> placed;
};

/// The point at a fraction of the line's length.
PaperPoint PointAlong(const PaperWay& line, double fraction);
double LengthOf(const PaperWay& line);

} // namespace qmv40::view
