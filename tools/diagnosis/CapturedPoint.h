#pragma once

#include "tools/model/Vector3.h"

#include <cstddef>
#include <vector>

namespace qmv40::diagnosis {

/// One captured point: the head's angles as they were written down, in degrees, and where the machine stood, brought to
/// the locked position.
struct CapturedPoint {
    double a = 0.0;
    double b = 0.0;
    model::Vector3 position;
};

/// Both sets of a capture. Points are counted through: the A set first, then the B set.
struct CapturedSets {
    std::vector<CapturedPoint> points;
    std::size_t aCount = 0; ///< as many of them are the A set

    bool IsOfASet(std::size_t index) const { return index < aCount; }
};

} // namespace qmv40::diagnosis
