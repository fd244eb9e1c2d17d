#include "tools/motion/Path.h"

#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::motion {

Path Path::Straight(const model::Vector3& start, const model::Vector3& end) {
    return {start, end - start, {0.0, 0.0, 0.0}, 0.0, false};
}

Path Path::Arc(const model::Vector3& start, const model::Vector3& centre, const model::Vector3& unitAxis,
               double degrees) {
    const model::Vector3 spoke = model::Perpendicular(start - centre, unitAxis);
    return {start - spoke, spoke, model::Cross(unitAxis, spoke), model::ToRadians(degrees), true};
}

model::Vector3 Path::AtAngle(double angle) const { return origin + std::cos(angle) * first + std::sin(angle) * second; }

model::Vector3 Path::At(double fraction) const { return isArc ? AtAngle(sweep * fraction) : origin + fraction * first; }

double Path::Radius() const { return isArc ? model::Length(first) : 0.0; }

double Path::Degrees() const { return model::ToDegrees(sweep); }

bool Path::Passes(double angle) const {
    constexpr double wholeTurn = 2.0 * std::numbers::pi;
    double ahead = std::fmod(sweep < 0.0 ? -angle : angle, wholeTurn);
    if (ahead < 0.0) ahead += wholeTurn;
    return ahead <= std::abs(sweep);
}

double Path::SmallestDistanceTo(const model::Vector3& point) const {
    const model::Vector3 fromOrigin = point - origin;
    if (!isArc) {
        const double squaredLength = model::Dot(first, first);
        const double foot =
            squaredLength == 0.0 ? 0.0 : std::clamp((model::Dot(fromOrigin, first)) / squaredLength, 0.0, 1.0);
        return model::Distance(At(foot), point);
    }
    const double atEnds = std::min(model::Distance(Start(), point), model::Distance(End(), point));
    const double nearest = std::atan2(model::Dot(fromOrigin, second), model::Dot(fromOrigin, first));
    return Passes(nearest) ? std::min(atEnds, model::Distance(AtAngle(nearest), point)) : atEnds;
}

Path::Range Path::RangeAlong(const model::Vector3& direction) const {
    const double start = model::Dot(Start(), direction);
    const double end = model::Dot(End(), direction);
    Range range{std::min(start, end), std::max(start, end)};
    if (!isArc) return range;
    const double summit = std::atan2(model::Dot(second, direction), model::Dot(first, direction));
    const double valley = summit + std::numbers::pi;
    if (Passes(summit)) range.largest = std::max(range.largest, model::Dot(AtAngle(summit), direction));
    if (Passes(valley)) range.smallest = std::min(range.smallest, model::Dot(AtAngle(valley), direction));
    return range;
}

Path Path::ShiftedBy(const model::Vector3& offset) const { return {origin + offset, first, second, sweep, isArc}; }

} // namespace qmv40::motion
