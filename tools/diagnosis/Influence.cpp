#include "tools/diagnosis/Influence.h"

#include "tools/diagnosis/Thresholds.h"
#include "tools/diagnosis/fit/HeadAxes.h"
#include "tools/diagnosis/fit/Statistics.h"

#include <algorithm>
#include <cmath>

namespace qmv40::diagnosis {

namespace {

/// The effect of leaving out a point of a set, to first order, from the covariances of the set's circle: the time for
/// each point is constant.
std::optional<Influence> InfluenceOf(const fit::AxisCircle& aCircle, const fit::AxisCircle& bCircle, bool isOfASet,
                                     std::size_t index) {
    const fit::AxisCircle& own = isOfASet ? aCircle : bCircle;
    const int left = own.DegreesOfFreedom() - 2;
    if (left < 1) return std::nullopt;
    const fit::CircleWithout without = fit::WithoutPoint(own, index);
    const fit::AxisCircle changed{without.centre, without.normal, {}, {}, 0.0, {}, 0.0, 0.0, {}};
    const fit::AxisCircle &a = isOfASet ? changed : aCircle, &b = isOfASet ? bCircle : changed;
    const model::Vector3 shift = fit::NearestPointOfBAxis(a, b) - fit::NearestPointOfBAxis(aCircle, bCircle);
    // An axis has no direction, so that half a turn is no turn.
    const double turn = std::remainder(fit::AzimuthOfAAxis(a) - fit::AzimuthOfAAxis(aCircle), 180.0);
    const double variance = std::max((own.sumOfSquares - without.gain) / left, thresholds::leastVariance);
    return Influence{model::SafeLength(shift), turn, fit::FTestUpperTail(without.gain / 2.0 / variance, 2.0, left)};
}

} // namespace

std::vector<PointDiagnosis> PointsOf(const captures::CapturedSets& sets, const fit::AxisCircle& aCircle,
                                     const fit::AxisCircle& bCircle, fit::HeadModel head) {
    const std::span all(sets.points);
    std::erase_if(head.errors, [&](const fit::ModelError& error) { return !error.IsOfTheHead(all.size()); });
    std::vector<PointDiagnosis> points;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool isA = sets.IsOfASet(i);
        const std::size_t inSet = isA ? i : i - sets.aCount;
        const fit::CirclePoint& onCircle = (isA ? aCircle : bCircle).points[inSet];
        const double offPlace = model::SafeLength(all[i].position - head.Position(all[i], i));
        points.push_back({onCircle, offPlace, InfluenceOf(aCircle, bCircle, isA, inSet)});
    }
    return points;
}

} // namespace qmv40::diagnosis
