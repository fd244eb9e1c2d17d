#pragma once

#include "tools/diagnosis/CapturedPoint.h"

namespace qmv40::diagnosis {

/// A capture with the turning angles of two points of one set in each other's place, so that the plain head fits best.
struct SwappedAngles {
    std::size_t first, second;
    CapturedSets sets; ///< with the two put right
};

/// The best of all pairs, whether it is any good or not; the angles it swaps are different ones.
SwappedAngles BestSwapOfAngles(const CapturedSets& sets);

} // namespace qmv40::diagnosis
