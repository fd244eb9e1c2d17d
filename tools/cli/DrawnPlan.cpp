#include "cli/DrawnPlan.h"

#include "check/Sampling.h"
#include "check/Vectors.h"

#include <algorithm>

namespace {

using check::HeadModel;
using check::LeverSide;

/// Long enough to show where the stylus points; how long it is the geometry does not know.
constexpr double drawnStylus = 15.0;

bool IsDrawn(const CMaVector& place) { return check::Length(place) <= drawnReach; }

/// Nothing when a part of the head is out of reach.
std::optional<DrawnHead> HeadAt(const HeadModel& head, const check::Sample& sample) {
    const CMaVector centre = check::Way(head.PoleSphere(), sample.position);
    const auto carried = [&](const CMaVector& position) { return centre + head.PlaceOnHead(position); };
    const auto lever = [&](LeverSide side) {
        return DrawnHead::Lever{carried(head.LeverCentre(side)), carried(head.LeverBall(side, sample.lever))};
    };
    const DrawnHead drawn{centre,
                          centre + head.DriveCup(sample.angles),
                          centre + head.TurnedWithHead({0.0, 0.0, -drawnStylus}, sample.angles),
                          {lever(LeverSide::Plus), lever(LeverSide::Minus)}};
    return std::ranges::all_of(drawn.Places(), IsDrawn) ? std::optional(drawn) : std::nullopt;
}

DrawnMove MoveOf(const CheckedPlan& checked, std::size_t index, const check::SweptMove& swept, const CMaVector& pole) {
    DrawnMove move{index, LevelOf(checked, index), {}, true};
    for (const check::Sample& sample : swept.samples) {
        const CMaVector place = check::Way(pole, sample.position);
        if (IsDrawn(place)) {
            move.way.push_back(place);
        } else {
            move.isComplete = false;
        }
    }
    return move;
}

} // namespace

std::vector<CMaVector> DrawnHead::Places() const {
    std::vector<CMaVector> places{centre, driveCup, stylusEnd};
    for (const Lever& lever : levers) places.insert(places.end(), {lever.pivot, lever.ball});
    return places;
}

std::array<DrawnPlan::Range, 3> DrawnPlan::Extent() const {
    std::array<Range, 3> extent;
    extent.fill({-sphereRadius, sphereRadius});
    const auto take = [&](const CMaVector& place, double radius) {
        for (int axis = 0; axis < 3; ++axis) {
            Range& range = extent[static_cast<std::size_t>(axis)];
            range.smallest = std::min(range.smallest, place[axis] - radius);
            range.largest = std::max(range.largest, place[axis] + radius);
        }
    };
    for (const DrawnMove& move : moves) {
        for (const CMaVector& place : move.way) take(place, 0.0);
    }
    for (const std::optional<DrawnHead>& each : {start, end}) {
        if (!each) continue;
        for (const CMaVector& place : each->Places()) take(place, ballRadius);
    }
    if (safeHeight) take({0.0, 0.0, *safeHeight}, 0.0);
    return extent;
}

DrawnPlan DrawnPlanOf(const CheckedPlan& checked, const HeadModel& head, const check::BallSizes& sizes) {
    const std::vector<check::SweptMove> path = check::SweptPath(head, checked.report);
    DrawnPlan plan{{},
                   std::nullopt,
                   std::nullopt,
                   head.SafeHeight() - head.PoleSphere()[2],
                   std::min(sizes.poleSphereRadius, drawnReach),
                   std::min(sizes.leverBallRadius, drawnReach)};
    if (!(std::abs(*plan.safeHeight) <= drawnReach)) plan.safeHeight.reset();
    for (std::size_t i = 0; i < path.size(); ++i) {
        plan.moves.push_back(MoveOf(checked, i, path[i], head.PoleSphere()));
    }
    if (path.empty()) return plan;
    plan.start = HeadAt(head, path.front().samples.front());
    plan.end = HeadAt(head, path.back().samples.back());
    return plan;
}
