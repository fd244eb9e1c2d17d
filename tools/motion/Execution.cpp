#include "tools/motion/Execution.h"

#include "tools/model/Angles.h"
#include "tools/model/Tolerances.h"

#include <algorithm>
#include <array>

namespace qmv40::motion {

namespace {

bool IsExecutable(const XYZData& target) { return IsFinite(plans::VectorOf(target)); }

bool IsExecutable(const ArcData& arc) {
    const double length = model::Length(plans::RotationVectorOf(arc));
    return IsFinite(plans::OriginOf(arc)) && std::isfinite(arc.RotationAngle) && std::isfinite(length) && length > 0.0;
}

model::LeverState Other(model::LeverState state) {
    return state == model::LeverState::Locked ? model::LeverState::Unlocked : model::LeverState::Locked;
}

bool IsAt(const model::Vector3& position, const model::Vector3& place) {
    return model::Distance(position, place) <= model::lengthTolerance;
}

} // namespace

model::HeadAngles ExecutedMove::AnglesAt(double fraction) const {
    return {before.angles.a + (after.angles.a - before.angles.a) * fraction,
            before.angles.b + (after.angles.b - before.angles.b) * fraction};
}

bool CanRun(const plans::Plan& plan) { return std::ranges::all_of(plan.moves, Machine::CanRun); }

Machine::Machine(const model::HeadModel& theHead, const model::HeadAngles& angles,
                 const std::optional<model::Vector3>& theStart)
    : head(theHead), state{angles, model::LeverState::Locked, false, std::nullopt}, position(theStart) {}

Machine Machine::InTheMiddle(const model::HeadModel& head, const HeadState& state, const model::Vector3& position) {
    Machine machine(head, state.angles, position);
    machine.state = state;
    return machine;
}

bool Machine::CanRun(const plans::PlannedMove& move) {
    return std::visit([](const auto& data) { return IsExecutable(data); }, move.data);
}

ExecutedMove Machine::Run(const plans::PlannedMove& move) {
    const model::Path path = PathOf(move);
    position = path.End();
    ExecutedMove executed{move.id, path, state, state, 0.0};
    executed.after = std::visit([&](const auto& data) { return After(data); }, move.data);
    executed.pulledOff = PulledOff(executed);
    if (executed.pulledOff > model::lengthTolerance) executed.after.isOnPeg = false;
    state = executed.after;
    return executed;
}

model::Path Machine::PathOf(const plans::PlannedMove& move) const {
    if (position) return plans::PathOf(move, *position);
    if (const auto* const target = std::get_if<XYZData>(&move.data))
        return plans::PathOf(move, plans::VectorOf(*target));
    // No plan of the component begins with an arc. If one does, it is run from the place where it should have begun.
    const model::LeverSide side = model::HeadModel::LeverInReach(state.angles);
    return plans::PathOf(move, head.LeverLine(side, state.lever).ApproachPoint());
}

HeadState Machine::After(const XYZData& /*target*/) const {
    HeadState after = state;
    after.pushed = 0.0;
    after.isOnPeg = IsAt(*position, head.EngagementPosition(state.angles));
    after.touchedBall.reset();
    for (const model::LeverSide side : {model::LeverSide::Plus, model::LeverSide::Minus}) {
        if (IsAt(*position, head.LeverBall(side, state.lever))) after.touchedBall = side;
    }
    return after;
}

HeadState Machine::After(const ArcData& arc) const {
    HeadState after = state;
    after.pushed = 0.0;
    after.touchedBall.reset();
    const model::Vector3 turn = plans::RightHandedDegrees(arc) * plans::AxisOf(arc);
    if (state.touchedBall) {
        const model::Turning push = head.LeverPush(*state.touchedBall, state.lever);
        const double pushedOn = model::Dot(turn, push.axis) * (push.degrees < 0.0 ? -1.0 : 1.0);
        if (state.pushed + pushedOn >= std::abs(push.degrees) - model::angleTolerance) after.lever = Other(state.lever);
    }
    if (state.isOnPeg && state.lever == model::LeverState::Unlocked) {
        // The head turns with the machine as far as its two axes allow it.
        after.angles.a += model::Dot(turn, head.TurnOfA(0.0, state.angles.b).axis);
        after.angles.b += model::Dot(turn, head.TurnOfB(0.0).axis);
    }
    return after;
}

double Machine::PulledOff(const ExecutedMove& move) const {
    if (!move.before.isOnPeg || !move.path.IsArc()) return 0.0;
    // A wrong rotation can end where it began: therefore points on the way are compared too.
    constexpr std::array fractions{0.25, 0.5, 0.75, 1.0};
    double farthest = 0.0;
    for (const double fraction : fractions) {
        const model::Vector3 seat = head.EngagementPosition(move.AnglesAt(fraction));
        farthest = std::max(farthest, model::Distance(move.path.At(fraction), seat));
    }
    return farthest;
}

} // namespace qmv40::motion
