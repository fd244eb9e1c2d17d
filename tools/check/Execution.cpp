#include "check/Execution.h"

#include "check/Tolerances.h"
#include "check/Vectors.h"

#include <algorithm>
#include <array>

namespace check {

namespace {

CMaVector RotationVector(const ArcData& arc) { return {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}; }

CMaVector OriginOf(const ArcData& arc) { return {arc.XOrigin, arc.YOrigin, arc.ZOrigin}; }

bool IsFinite(const CMaVector& vector) {
    return std::isfinite(vector[0]) && std::isfinite(vector[1]) && std::isfinite(vector[2]);
}

bool MakesAMove(const XYZData& target) { return IsFinite(VectorOf(target)); }

bool MakesAMove(const ArcData& arc) {
    const double length = Length(RotationVector(arc));
    return IsFinite(OriginOf(arc)) && std::isfinite(arc.RotationAngle) && std::isfinite(length) && length > 0.0;
}

LeverState Other(LeverState state) { return state == LeverState::Locked ? LeverState::Unlocked : LeverState::Locked; }

bool IsAt(const CMaVector& position, const CMaVector& place) { return Distance(position, place) <= lengthTolerance; }

} // namespace

CMaVector AxisOf(const ArcData& arc) { return UnitOf(RotationVector(arc)); }

double RightHandedDegrees(const ArcData& arc) { return -arc.RotationAngle; }

HeadAngles ExecutedMove::AnglesAt(double fraction) const {
    return {before.angles.a + (after.angles.a - before.angles.a) * fraction,
            before.angles.b + (after.angles.b - before.angles.b) * fraction};
}

Machine::Machine(const HeadModel& theHead, const HeadAngles& angles, const std::optional<CMaVector>& theStart)
    : head(theHead), state{angles, LeverState::Locked, false, std::nullopt}, position(theStart) {}

bool Machine::CanRun(const PlannedMove& move) {
    return std::visit([](const auto& data) { return MakesAMove(data); }, move.data);
}

ExecutedMove Machine::Run(const PlannedMove& move) {
    const Path path = std::visit([&](const auto& data) { return PathOf(data); }, move.data);
    position = path.End();
    ExecutedMove executed{move.id, path, state, state, 0.0};
    executed.after = std::visit([&](const auto& data) { return After(data); }, move.data);
    executed.pulledOff = PulledOff(executed);
    if (executed.pulledOff > lengthTolerance) executed.after.isOnPeg = false;
    state = executed.after;
    return executed;
}

Path Machine::PathOf(const XYZData& target) const {
    const CMaVector end = VectorOf(target);
    return Path::Straight(position.value_or(end), end);
}

Path Machine::PathOf(const ArcData& arc) const {
    // No plan begins with an arc; one that does is run from where it should have begun.
    const LeverSide side = HeadModel::LeverInReach(state.angles);
    const CMaVector start = position ? *position : head.LeverLine(side, state.lever).ApproachPoint();
    return Path::Arc(start, OriginOf(arc), AxisOf(arc), RightHandedDegrees(arc));
}

HeadState Machine::After(const XYZData& /*target*/) const {
    HeadState after = state;
    after.isOnPeg = IsAt(*position, head.EngagementPosition(state.angles));
    after.touchedBall.reset();
    for (const LeverSide side : {LeverSide::Plus, LeverSide::Minus}) {
        if (IsAt(*position, head.LeverBall(side, state.lever))) after.touchedBall = side;
    }
    return after;
}

HeadState Machine::After(const ArcData& arc) const {
    HeadState after = state;
    after.touchedBall.reset();
    const CMaVector turn = AxisOf(arc) * RightHandedDegrees(arc);
    if (state.touchedBall) {
        const Turning push = head.LeverPush(*state.touchedBall, state.lever);
        const double pushed = (turn % push.axis) * (push.degrees < 0.0 ? -1.0 : 1.0);
        if (pushed >= std::abs(push.degrees) - angleTolerance) after.lever = Other(state.lever);
    }
    if (state.isOnPeg && state.lever == LeverState::Unlocked) {
        // The head follows the machine as far as its two axes let it.
        after.angles.a += turn % head.TurnOfA(0.0, state.angles.b).axis;
        after.angles.b += turn % head.TurnOfB(0.0).axis;
    }
    return after;
}

double Machine::PulledOff(const ExecutedMove& move) const {
    if (!move.before.isOnPeg || !move.path.IsArc()) return 0.0;
    // A wrong turn may come back to where it was: a look on the way finds it.
    constexpr std::array fractions{0.25, 0.5, 0.75, 1.0};
    double farthest = 0.0;
    for (const double fraction : fractions) {
        const CMaVector seat = head.EngagementPosition(move.AnglesAt(fraction));
        farthest = std::max(farthest, Distance(move.path.At(fraction), seat));
    }
    return farthest;
}

} // namespace check
