#include "tools/recovery/Recovery.h"

#include "tools/plans/Tour.h"
#include "tools/text/Failures.h"

#include <array>
#include <cmath>

namespace qmv40::recovery {

namespace {

using model::LeverState;

/// The plans, when all of them can be run: paths exist only then.
Plans Runnable(Plans plans) {
    if (motion::CanRun(plans.underWay) && motion::CanRun(plans.back) && motion::CanRun(plans.stay)) return plans;
    throw text::UsageError{
        "the plan has a move with a number that is not finite: no machine can have run it. Look at the "
        "settings with `qmv40 doctor`"};
}

} // namespace

std::vector<plans::PlacedMove> CheckedWay::Placed(const model::Vector3& standing) const {
    std::vector<plans::PlannedMove> moves;
    moves.reserve(way.moves.size());
    for (const WayMove& each : way.moves) moves.push_back(each.move);
    return plans::PlacedMoves(moves, standing);
}

Plans PlansFor(const std::string& geometryFile, const model::HeadAngles& from, const model::HeadAngles& to) {
    const std::array positions{from, from, to, from};
    const std::vector<plans::Plan> tour = plans::PlanTour(geometryFile, positions);
    return {tour[1], tour[2], tour[0]};
}

StoppedPlan::StoppedPlan(const model::HeadModel& theHead, Plans thePlans)
    : head(theHead), plans(Runnable(std::move(thePlans))), paths(plans.underWay, EndOf(plans.stay)) {}

Stopped StoppedPlan::StateAt(const Progress& place) const {
    const model::HeadAngles angles = paths.AnglesAt(place);
    const State state = StateInMove(place.number);
    const bool isLocked = state == State::Untouched || state == State::Unlocking || state == State::Locked;
    motion::HeadState stopped{angles, isLocked ? LeverState::Locked : LeverState::Unlocked, state == State::OnPeg, {}};
    if (state == State::Unlocking || state == State::Locking) {
        stopped.touchedBall = model::HeadModel::LeverInReach(angles);
        stopped.pushed = std::abs(paths.PathOf(place.number).Degrees()) * place.fraction;
    }
    return {stopped, paths.PathOf(place.number).At(place.fraction)};
}

Stopped StoppedPlan::StateOf(const Stop& stop, const model::Vector3& standing) const {
    Stopped state = StateAt(stop.Place().place);
    // Where the first move began is not known, and therefore its path is not known.
    if (stop.Place().place.number == 1) state.position = standing;
    return state;
}

CheckedWay StoppedPlan::BestOf(std::vector<WayOut> ways, const check::CheckOptions& options,
                               const Stopped& state) const {
    std::optional<check::Finding> ofFirst;
    for (WayOut& way : ways) {
        std::optional<check::Finding> finding = FirstFinding(head, options, state, way);
        if (!finding) return {std::move(way), std::nullopt};
        if (!ofFirst) ofFirst = finding;
    }
    return {std::move(ways.front()), ofFirst};
}

Recovery StoppedPlan::Answer(const Question& question) const {
    Recovery recovery{FindStop(paths, question.standing, question.known, question.positionError), {}, {}};
    if (recovery.stop.state == State::Unknown) return recovery;
    const Progress place = recovery.stop.Place().place;
    const Stopped state = StateOf(recovery.stop, question.standing);
    const double height = head.SafeHeight();
    recovery.finish = BestOf(WaysToFinish(plans, place, state, height), question.check, state);
    recovery.backOut = BestOf(WaysBack(plans, place, state, height), question.check, state);
    return recovery;
}

} // namespace qmv40::recovery
