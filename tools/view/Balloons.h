#pragma once

#include "tools/view/Svg.h"

namespace qmv40::view {

/// Finds places for the numbers of a drawing, each in a circle that a thin line ties to what it numbers.

inline constexpr double balloonRadius = 1.75; ///< mm on paper
/// The fraction of a line where its number had best be tied to it: not the middle, where that of another which goes the
/// same way back would be.
inline constexpr double placeOfNumber = 0.42;

struct Balloon {
    PaperPoint anchor; ///< on what is numbered
    PaperPoint centre;
};

/// One view's balloons: apart from each other, inside the view, and off its lines as far as there is room.
class Balloons {
public:
    Balloons(const PaperPoint& theCorner, double theWidth, double theHeight)
        : corner(theCorner), width(theWidth), height(theHeight) {}

    /// Lines that balloons had better not cover.
    void Avoid(const PaperWay& line);
    /// A place for the number of `line`, which must not be empty.
    Balloon Place(const PaperWay& line);

private:
    double CostOf(const Balloon& balloon) const;
    bool IsInside(const PaperPoint& centre) const;

    PaperPoint corner;
    double width;
    double height;
    PaperWay obstacles;
    std::vector<Balloon> placed;
};

/// The point at a fraction of a line's length.
PaperPoint PointAlong(const PaperWay& line, double fraction);
double LengthOf(const PaperWay& line);

} // namespace qmv40::view
