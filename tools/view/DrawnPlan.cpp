#include "tools/view/DrawnPlan.h"

#include "tools/check/CheckReport.h"
#include "tools/model/Tolerances.h"
#include "tools/motion/Sampling.h"

#include <algorithm>

namespace qmv40::view {

namespace {

using model::HeadModel;
using model::LeverSide;

/// Long enough to show the direction of the stylus; a geometry does not say how long the stylus is.
constexpr double drawnStylus = 15.0;

bool IsDrawn(const model::Vector3& place) { return model::Length(place) <= drawnReach; }

/// Empty when a part of the head is beyond the drawn range.
std::optional<DrawnHead> HeadAt(const HeadModel& head, const motion::Sample& sample) {
    const model::Vector3 centre = sample.position - head.PoleSphere();
    const auto carried = [&](const model::Vector3& position) { return centre + head.PlaceOnHead(position); };
    const auto lever = [&](LeverSide side) {
        return DrawnHead::Lever{carried(head.LeverCentre(side)), carried(head.LeverBall(side, sample.lever))};
    };
    const DrawnHead drawn{centre,
                          centre + head.DriveCup(sample.angles),
                          centre + head.TurnedWithHead({0.0, 0.0, -drawnStylus}, sample.angles),
                          {lever(LeverSide::Plus), lever(LeverSide::Minus)}};
    return std::ranges::all_of(drawn.Places(), IsDrawn) ? std::optional(drawn) : std::nullopt;
}

DrawnMove MoveOf(const check::CheckedPlan& checked, std::size_t index, const std::vector<motion::Sample>& samples,
                 const model::Vector3& pole) {
    std::vector<model::Vector3> way;
    for (const motion::Sample& sample : samples) {
        const model::Vector3 place = sample.position - pole;
        if (IsDrawn(place)) way.push_back(place);
    }
    const bool isComplete = way.size() == samples.size();
    return {index, LevelOf(checked, index), std::move(way), isComplete};
}

} // namespace

const char* NameOf(MoveLevel level) {
    constexpr const char* names[] = {"clear", "tight", "contact", "finding"};
    return names[static_cast<int>(level)];
}

MoveLevel LevelOf(const check::CheckedPlan& checked, std::size_t move) {
    const auto isNamed = [&](const check::Finding& finding) { return finding.move == move; };
    if (move >= checked.report.moves.size() || std::ranges::any_of(checked.report.findings, isNamed)) {
        return MoveLevel::Finding;
    }
    const check::CheckedMove& run = checked.report.moves[move];
    if (*check::ContactOf(run.run.id) != '\0') return MoveLevel::Contact;
    const double clearance = std::min(run.clearance.toPoleSphere, run.clearance.toLevers);
    return clearance < tightClearance - model::lengthTolerance ? MoveLevel::Tight : MoveLevel::Clear;
}

std::vector<motion::ExecutedMove> RunsOf(const check::PlanReport& report, std::size_t index) {
    std::vector<motion::ExecutedMove> runs;
    if (index == 0) runs = report.way;
    runs.push_back(report.moves[index].run);
    return runs;
}

std::vector<model::Vector3> DrawnHead::Places() const {
    std::vector<model::Vector3> places{centre, driveCup, stylusEnd};
    for (const Lever& lever : levers) places.insert(places.end(), {lever.pivot, lever.ball});
    return places;
}

std::array<DrawnPlan::Range, 3> DrawnPlan::Extent() const {
    std::array<Range, 3> extent;
    extent.fill({-sphereRadius, sphereRadius});
    const auto take = [&](const model::Vector3& place, double radius) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            Range& range = extent[axis];
            range.smallest = std::min(range.smallest, place[axis] - radius);
            range.largest = std::max(range.largest, place[axis] + radius);
        }
    };
    for (const DrawnMove& move : moves) {
        for (const model::Vector3& place : move.way) take(place, 0.0);
    }
    for (const std::optional<DrawnHead>& each : {start, end}) {
        if (!each) continue;
        for (const model::Vector3& place : each->Places()) take(place, ballRadius);
    }
    if (safeHeight) take({0.0, 0.0, *safeHeight}, 0.0);
    return extent;
}

DrawnPlan DrawnPlanOf(const check::CheckedPlan& checked, const HeadModel& head, const check::BallSizes& sizes) {
    DrawnPlan plan{{},
                   std::nullopt,
                   std::nullopt,
                   head.SafeHeight() - head.PoleSphere().z,
                   std::min(sizes.poleSphereRadius, drawnReach),
                   std::min(sizes.leverBallRadius, drawnReach)};
    if (!(std::abs(*plan.safeHeight) <= drawnReach)) plan.safeHeight.reset();
    for (std::size_t i = 0; i < checked.report.moves.size(); ++i) {
        std::vector<motion::Sample> samples;
        for (const motion::ExecutedMove& run : RunsOf(checked.report, i)) {
            std::ranges::copy(motion::SamplesOf(head, run), std::back_inserter(samples));
        }
        plan.moves.push_back(MoveOf(checked, i, samples, head.PoleSphere()));
        if (i == 0) plan.start = HeadAt(head, samples.front());
        plan.end = HeadAt(head, samples.back());
    }
    return plan;
}

} // namespace qmv40::view
