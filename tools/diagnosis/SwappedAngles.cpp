#include "tools/diagnosis/SwappedAngles.h"

#include "tools/diagnosis/HeadSums.h"

#include <limits>
#include <utility>

namespace qmv40::diagnosis {

namespace {

void SwapTurningAngles(CapturedSets& sets, std::size_t first, std::size_t second) {
    if (sets.IsOfASet(first)) {
        std::swap(sets.points[first].a, sets.points[second].a);
    } else {
        std::swap(sets.points[first].b, sets.points[second].b);
    }
}

model::Vector3 MeanOf(const CapturedSets& sets) {
    model::Vector3 sum;
    for (const CapturedPoint& point : sets.points) sum = sum + point.position;
    return (1.0 / static_cast<double>(sets.points.size())) * sum;
}

HeadSums SumsOf(const CapturedPoint& point) { return {point, 0.0, 0.0}; }

/// The sum of squares of the plain head after a swap.
class Swaps {
public:
    explicit Swaps(CapturedSets theSets) : sets(std::move(theSets)) {
        const model::Vector3 mean = MeanOf(sets);
        for (CapturedPoint& point : sets.points) {
            point.position = point.position - mean;
            total += SumsOf(point);
        }
    }

    double SumAfter(std::size_t first, std::size_t second) {
        HeadSums sums = total;
        sums -= SumsOf(sets.points[first]);
        sums -= SumsOf(sets.points[second]);
        SwapTurningAngles(sets, first, second);
        sums += SumsOf(sets.points[first]);
        sums += SumsOf(sets.points[second]);
        SwapTurningAngles(sets, first, second);
        // Where the positions lie evenly, swapping the others is as good for a head whose stylus points sideways.
        const BestHeadResult best = BestHead({&sums, 1});
        return best.model.StylusHangs() ? best.sumOfSquares : std::numeric_limits<double>::infinity();
    }

private:
    CapturedSets sets;
    HeadSums total;
};

} // namespace

SwappedAngles BestSwapOfAngles(const CapturedSets& sets) {
    Swaps swaps(sets);
    SwappedAngles best{0, 1, sets};
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < sets.points.size(); ++i) {
        for (std::size_t j = i + 1; j < sets.points.size() && sets.IsOfASet(i) == sets.IsOfASet(j); ++j) {
            const double sum = swaps.SumAfter(i, j);
            if (!(sum < least)) continue;
            least = sum;
            best.first = i;
            best.second = j;
        }
    }
    SwapTurningAngles(best.sets, best.first, best.second);
    return best;
}

} // namespace qmv40::diagnosis
