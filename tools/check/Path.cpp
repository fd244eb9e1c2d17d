#include "check/Path.h"

#include "check/Vectors.h"

#include <algorithm>

namespace check {

Path Path::Straight(const CMaVector& start, const CMaVector& end) {
    return {start, Way(start, end), {0.0, 0.0, 0.0}, 0.0, false};
}

Path Path::Arc(const CMaVector& start, const CMaVector& centre, const CMaVector& unitAxis, double degrees) {
    const CMaVector spoke = Across(Way(centre, start), unitAxis);
    return {Way(spoke, start), spoke, unitAxis * spoke, RadiansOf(degrees), true};
}

CMaVector Path::AtAngle(double angle) const { return origin + first * std::cos(angle) + second * std::sin(angle); }

CMaVector Path::At(double fraction) const { return isArc ? AtAngle(sweep * fraction) : origin + first * fraction; }

double Path::Radius() const { return isArc ? Length(first) : 0.0; }

double Path::Degrees() const { return DegreesOf(sweep); }

bool Path::Passes(double angle) const {
    constexpr double wholeTurn = 2.0 * std::numbers::pi;
    double ahead = std::fmod(sweep < 0.0 ? -angle : angle, wholeTurn);
    if (ahead < 0.0) ahead += wholeTurn;
    return ahead <= std::abs(sweep);
}

double Path::SmallestDistanceTo(const CMaVector& point) const {
    const CMaVector way = Way(origin, point);
    if (!isArc) {
        const double squaredLength = first % first;
        const double foot = squaredLength == 0.0 ? 0.0 : std::clamp((way % first) / squaredLength, 0.0, 1.0);
        return Distance(At(foot), point);
    }
    const double atEnds = std::min(Distance(Start(), point), Distance(End(), point));
    const double nearest = std::atan2(way % second, way % first);
    return Passes(nearest) ? std::min(atEnds, Distance(AtAngle(nearest), point)) : atEnds;
}

Path::Range Path::RangeAlong(const CMaVector& direction) const {
    const double start = Start() % direction;
    const double end = End() % direction;
    Range range{std::min(start, end), std::max(start, end)};
    if (!isArc) return range;
    const double summit = std::atan2(second % direction, first % direction);
    const double valley = summit + std::numbers::pi;
    if (Passes(summit)) range.largest = std::max(range.largest, AtAngle(summit) % direction);
    if (Passes(valley)) range.smallest = std::min(range.smallest, AtAngle(valley) % direction);
    return range;
}

Path Path::ShiftedBy(const CMaVector& offset) const { return {origin + offset, first, second, sweep, isArc}; }

} // namespace check
