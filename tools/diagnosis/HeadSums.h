#pragma once

#include "tools/diagnosis/CaptureModel.h"

namespace qmv40::diagnosis {

/// What the best head for some points depends on, so that points can be counted in and out without looking at the
/// others again. For given angles the pole and the tip follow from the mounting angle by linear equations, and of the
/// mounting angle the smallest sum of squares is a plain function that is searched as a whole: whatever the mounting,
/// the best head is found.
///
/// Sums lose digits where coordinates are large beside their differences: bring the points near the origin first.
struct HeadSums {
    double count = 0.0;
    double squares = 0.0; ///< of the positions
    model::Vector3 positions;
    model::Vector3 turns[3]; ///< sum of the points' turns K = Rz(B) R(-X, A), by columns
    model::Vector3 turnedX;  ///< sum of K^T times the positions' horizontal parts
    model::Vector3 turnedY;  ///< the same with the horizontal parts turned by -90 degrees
    model::Vector3 turnedZ;  ///< sum of K^T times the positions' vertical parts

    HeadSums() = default;
    /// Of one point, its angles corrected (radians).
    HeadSums(const CapturedPoint& point, double moreTilt, double moreSwivel);

    HeadSums& operator+=(const HeadSums& other);
    HeadSums& operator-=(const HeadSums& other);

    // The same points, corrected alike: without looking at any of them again

    /// Their A is this much more (radians).
    HeadSums Tilted(double moreTilt) const;
    /// Their B is this much more (radians).
    HeadSums Swivelled(double moreSwivel) const;
    /// Their positions are moved.
    HeadSums Shifted(const model::Vector3& shift) const;
};

struct BestHeadResult {
    HeadModel model; ///< with the pole of the first group
    double sumOfSquares = 0.0;
};

/// The best head for points in one or more groups, each with a pole of its own.
BestHeadResult BestHead(std::span<const HeadSums> groups);

} // namespace qmv40::diagnosis
