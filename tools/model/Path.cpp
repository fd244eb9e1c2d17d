#include "tools/model/Path.h"

#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::model {

Path Path::Straight(const Vector3& start, const Vector3& end) {
    return {start, end - start, {0.0, 0.0, 0.0}, 0.0, false};
}

Path Path::Arc(const Vector3& start, const Vector3& centre, const Vector3& unitAxis, double degrees) {
    const Vector3 radius = Perpendicular(start - centre, unitAxis);
    return {start - radius, radius, Cross(unitAxis, radius), ToRadians(degrees), true};
}

Vector3 Path::AtAngle(double angle) const { return origin + std::cos(angle) * first + std::sin(angle) * second; }

Vector3 Path::At(double fraction) const { return isArc ? AtAngle(sweep * fraction) : origin + fraction * first; }

double Path::Length() const { return isArc ? Radius() * std::abs(sweep) : model::Length(first); }

double Path::Radius() const { return isArc ? model::Length(first) : 0.0; }

double Path::Degrees() const { return ToDegrees(sweep); }

double Path::AngleAhead(double angle) const {
    constexpr double wholeTurn = 2.0 * std::numbers::pi;
    const double ahead = std::fmod(sweep < 0.0 ? -angle : angle, wholeTurn);
    return ahead < 0.0 ? ahead + wholeTurn : ahead;
}

bool Path::Passes(double angle) const { return AngleAhead(angle) <= std::abs(sweep); }

double Path::NearestFraction(const Vector3& point) const {
    const Vector3 fromOrigin = point - origin;
    if (!isArc) {
        const double squaredLength = Dot(first, first);
        return squaredLength == 0.0 ? 0.0 : std::clamp(Dot(fromOrigin, first) / squaredLength, 0.0, 1.0);
    }
    const double nearest = std::atan2(Dot(fromOrigin, second), Dot(fromOrigin, first));
    if (sweep != 0.0 && Passes(nearest)) return std::min(AngleAhead(nearest) / std::abs(sweep), 1.0);
    return Distance(Start(), point) <= Distance(End(), point) ? 0.0 : 1.0;
}

double Path::SmallestDistanceTo(const Vector3& point) const { return Distance(At(NearestFraction(point)), point); }

Path::Range Path::RangeAlong(const Vector3& direction) const {
    const double start = Dot(Start(), direction);
    const double end = Dot(End(), direction);
    Range range{std::min(start, end), std::max(start, end)};
    if (!isArc) return range;
    const double angleOfLargest = std::atan2(Dot(second, direction), Dot(first, direction));
    const double angleOfSmallest = angleOfLargest + std::numbers::pi;
    if (Passes(angleOfLargest)) range.largest = std::max(range.largest, Dot(AtAngle(angleOfLargest), direction));
    if (Passes(angleOfSmallest)) range.smallest = std::min(range.smallest, Dot(AtAngle(angleOfSmallest), direction));
    return range;
}

Path Path::ShiftedBy(const Vector3& offset) const { return {origin + offset, first, second, sweep, isArc}; }

} // namespace qmv40::model
