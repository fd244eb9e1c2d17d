#include "tools/view/Balloons.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace qmv40::view {

namespace {

constexpr double obstacleSpacing = 0.8; // mm: less than a balloon's size, so that no line passes unseen below one
constexpr double distanceBetween = 2.0 * balloonRadius + 0.4;

// Relative costs: a balloon on another one is accepted only when there is no other place, one on a line rarely, a long
// leader sometimes.
constexpr double costOfCollision = 1000.0;
constexpr double costOfCrossing = 40.0;
constexpr double costOfCovering = 1.5;
constexpr double costOfLength = 0.5;
constexpr double costOffThePlace = 2.0;

PaperPoint Between(const PaperPoint& from, const PaperPoint& to, double fraction) {
    return {from.x + (to.x - from.x) * fraction, from.y + (to.y - from.y) * fraction};
}

/// The distance of `point` from a line segment.
double DistanceTo(const PaperPoint& from, const PaperPoint& to, const PaperPoint& point) {
    const double length = Distance(from, to);
    if (length == 0.0) return Distance(from, point);
    const double along = ((point.x - from.x) * (to.x - from.x) + (point.y - from.y) * (to.y - from.y)) / length;
    return Distance(Between(from, to, std::clamp(along / length, 0.0, 1.0)), point);
}

/// Candidate places around a point of the line, nearest first.
std::vector<Balloon> Around(const PaperPoint& anchor) {
    constexpr int directions = 16;
    constexpr double leaders[] = {3.2, 4.5, 6.0, 8.0, 10.5, 14.0};
    std::vector<Balloon> places;
    for (const double leader : leaders) {
        for (int i = 0; i < directions; ++i) {
            const double angle = 2.0 * std::numbers::pi * (i + 0.5) / directions;
            places.push_back({anchor, {anchor.x + leader * std::cos(angle), anchor.y + leader * std::sin(angle)}});
        }
    }
    return places;
}

} // namespace

void Balloons::Avoid(const PaperWay& line) {
    const int steps = std::max(1, static_cast<int>(std::ceil(LengthOf(line) / obstacleSpacing)));
    for (int i = 0; i <= steps; ++i) obstacles.push_back(PointAlong(line, static_cast<double>(i) / steps));
}

Balloon Balloons::Place(const PaperWay& line) {
    Balloon best{};
    double least = std::numeric_limits<double>::infinity();
    for (const double fraction : {placeOfNumber, 0.3, 0.55, 0.2, 0.7, 0.85}) {
        for (const Balloon& balloon : Around(PointAlong(line, fraction))) {
            const double cost = CostOf(balloon, least) + costOffThePlace * std::abs(fraction - placeOfNumber);
            if (cost < least) {
                least = cost;
                best = balloon;
            }
        }
    }
    placed.push_back(best);
    return best;
}

bool Balloons::IsInside(const PaperPoint& centre) const {
    return centre.x >= corner.x + balloonRadius && centre.x <= corner.x + width - balloonRadius &&
           centre.y >= corner.y + balloonRadius && centre.y <= corner.y + height - balloonRadius;
}

double Balloons::CostOf(const Balloon& balloon, double limit) const {
    if (!IsInside(balloon.centre)) return 1e6; // used only when no candidate is inside
    double cost = costOfLength * Distance(balloon.anchor, balloon.centre);
    for (const Balloon& other : placed) {
        if (Distance(other.centre, balloon.centre) < distanceBetween) cost += costOfCollision;
        const double between = std::min(DistanceTo(balloon.anchor, balloon.centre, other.centre),
                                        DistanceTo(other.anchor, other.centre, balloon.centre));
        if (between < balloonRadius) cost += costOfCrossing;
    }
    // Counting what it covers takes longest, and only a balloon below the limit is used.
    if (cost >= limit) return cost;
    const auto isCovered = [&](const PaperPoint& point) {
        constexpr double reach = balloonRadius + 0.3;
        return std::abs(point.x - balloon.centre.x) < reach && Distance(point, balloon.centre) < reach;
    };
    return cost + costOfCovering * static_cast<double>(std::ranges::count_if(obstacles, isCovered));
}

double LengthOf(const PaperWay& line) {
    double length = 0.0;
    for (std::size_t i = 1; i < line.size(); ++i) length += Distance(line[i - 1], line[i]);
    return length;
}

PaperPoint PointAlong(const PaperWay& line, double fraction) {
    double ahead = LengthOf(line) * fraction;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const double step = Distance(line[i - 1], line[i]);
        if (ahead <= step && step > 0.0) return Between(line[i - 1], line[i], ahead / step);
        ahead -= step;
    }
    return line.back();
}

} // namespace qmv40::view
