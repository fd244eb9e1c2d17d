#pragma once

#include "tools/model/Vector3.h"

#include <cstddef>
#include <numeric>
#include <span>
#include <vector>

namespace qmv40::captures {

/// One captured point: the head's angles as they are written down, in degrees, and the machine position, converted to
/// that of the locked head.
struct CapturedPoint {
    double a = 0.0;
    double b = 0.0;
    model::Vector3 position;
    double weight = 1.0; ///< factor of its squared residuals; not 1 in one set when the two sets have different noise
};

/// Both sets of a capture. The points of both are numbered together, those of the A set first.
struct CapturedSets {
    std::vector<CapturedPoint> points;
    std::size_t aCount = 0; ///< the number of points of the A set

    bool IsOfASet(std::size_t index) const { return index < aCount; }
    std::span<const CapturedPoint> Set(bool isOfASet) const {
        return isOfASet ? std::span(points).first(aCount) : std::span(points).subspan(aCount);
    }
};

inline std::vector<model::Vector3> PositionsOf(std::span<const CapturedPoint> points) {
    std::vector<model::Vector3> positions;
    positions.reserve(points.size());
    for (const CapturedPoint& point : points) positions.push_back(point.position);
    return positions;
}

inline model::Vector3 MeanPosition(std::span<const CapturedPoint> points) {
    model::Vector3 sum;
    for (const CapturedPoint& point : points) sum = sum + point.position;
    return (1.0 / static_cast<double>(points.size())) * sum;
}

/// The numbers of the points from `first` to the one before `last`.
inline std::vector<std::size_t> PointRange(std::size_t first, std::size_t last) {
    std::vector<std::size_t> points(last - first);
    std::iota(points.begin(), points.end(), first);
    return points;
}

} // namespace qmv40::captures
