#pragma once

#include "tools/diagnosis/fit/CaptureModel.h"

namespace qmv40::diagnosis::fit {

/// Sums over points from which the best head for these points follows. Points can be added and removed without
/// computing the sums of the others again. For a given mounting angle, pole sphere and tip follow from linear
/// equations. The sum of squares as a function of the mounting angle alone is searched over its whole range, so that
/// the best head is found for every mounting.
///
/// Sums lose digits when coordinates are large compared with their differences. Shift the points near the origin first.
struct HeadSums {
    double count = 0.0;   ///< of the points, by their weights
    double squares = 0.0; ///< of the positions
    model::Vector3 positions;
    model::Vector3 turns[3]; ///< sum of the points' turns K = Rz(B) R(-X, A), by columns
    model::Vector3 turnedX;  ///< sum of K^T times the positions' horizontal parts
    model::Vector3 turnedY;  ///< the same with the horizontal parts turned by -90 degrees
    model::Vector3 turnedZ;  ///< sum of K^T times the positions' vertical parts

    HeadSums() = default;
    /// The sums of one point, with its angles corrected (radians).
    HeadSums(const captures::CapturedPoint& point, double moreTilt, double moreSwivel);

    HeadSums& operator+=(const HeadSums& other);
    HeadSums& operator-=(const HeadSums& other);

    // The sums of the same points with one correction for all, in constant time

    /// Their A is this much more (radians).
    HeadSums Tilted(double moreTilt) const;
    /// Their B is this much more (radians).
    HeadSums Swivelled(double moreSwivel) const;
    /// Their positions are moved.
    HeadSums Shifted(const model::Vector3& shift) const;

private:
    template <typename Operation> HeadSums& Combine(Operation operation, const HeadSums& other);
};

struct BestHeadResult {
    HeadModel model; ///< with the pole sphere of the first group
    double sumOfSquares = 0.0;
};

/// The best head for points in one or more groups, each with a pole sphere of its own.
BestHeadResult BestHead(std::span<const HeadSums> groups);

} // namespace qmv40::diagnosis::fit
