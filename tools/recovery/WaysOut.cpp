#include "tools/recovery/WaysOut.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>

namespace qmv40::recovery {

namespace {

using plans::MoveId;

const plans::PlannedMove& MoveOf(const plans::Plan& plan, MoveId id) { return plan.moves[IndexOf(id)]; }
const XYZData& TargetOf(const plans::Plan& plan, MoveId id) { return std::get<XYZData>(MoveOf(plan, id).data); }
const ArcData& ArcOf(const plans::Plan& plan, MoveId id) { return std::get<ArcData>(MoveOf(plan, id).data); }

/// The same axis with another angle.
ArcData TurnedBy(ArcData arc, double rotationAngle) {
    arc.RotationAngle = rotationAngle;
    return arc;
}

/// The angle, as records give it, by which an arc about the vertical axis through `centre` leads from one azimuth to
/// the other. Of the angles that differ by whole turns, the one that is closest to `near`.
double SwingAngle(const model::Vector3& centre, const model::Vector3& from, const model::Vector3& to, double near) {
    const model::Vector3 first = from - centre;
    const model::Vector3 second = to - centre;
    const double counterClockwise =
        model::ToDegrees(std::atan2(first.x * second.y - first.y * second.x, first.x * second.x + first.y * second.y));
    return near + std::remainder(-counterClockwise - near, 360.0);
}

/// Collects the moves of one way out.
class Builder {
public:
    Builder(const Plans& thePlans, const Progress& theStopped) : plans(thePlans), stopped(theStopped) {}

    Builder& Add(const plans::PlannedMove& move) {
        moves.push_back({move, move.id});
        return *this;
    }
    Builder& AddStraight(MoveId id, const XYZData& target) { return Add({id, target}); }
    /// Leaves a lever's ball on the line on which it was approached.
    Builder& AddOffTheBall(MoveId id, MoveId contact) {
        moves.push_back({{id, TargetOf(plans.underWay, id)}, contact});
        return *this;
    }
    Builder& AddPlan(const plans::Plan& plan, MoveId first) {
        for (std::size_t i = IndexOf(first); i < plan.moves.size(); ++i) Add(plan.moves[i]);
        return *this;
    }
    /// The remaining part of the move in which the machine stopped.
    Builder& AddRest() {
        const plans::PlannedMove& move = plans.underWay.moves[stopped.number - 1];
        const auto* const arc = std::get_if<ArcData>(&move.data);
        if (arc == nullptr) return Add(move);
        return Add({move.id, TurnedBy(*arc, arc->RotationAngle * (1.0 - stopped.fraction))});
    }
    /// The part of that move that was made, back to its start. `id`: the name that the move gets.
    Builder& AddReturn(MoveId id) {
        const auto& arc = std::get<ArcData>(plans.underWay.moves[stopped.number - 1].data);
        return Add({id, TurnedBy(arc, -arc.RotationAngle * stopped.fraction)});
    }

    Builder& AddSwingToPeg(const model::Vector3& from) {
        const ArcData& swing = ArcOf(plans.back, MoveId::RotateToPeg);
        const model::Vector3 peg = plans::VectorOf(TargetOf(plans.back, MoveId::ApproachPeg));
        const double angle = SwingAngle(plans::OriginOf(swing), from, peg, BackOver(MoveId::RotateToLockLever));
        return Add({MoveId::RotateToPeg, TurnedBy(swing, angle)});
    }

    Builder& AddSwingToLever(const model::Vector3& from) {
        const ArcData& swing = ArcOf(plans.stay, MoveId::RotateToLockLever);
        const model::Vector3 lever = plans::VectorOf(TargetOf(plans.stay, MoveId::ApproachLockLever));
        const double angle = SwingAngle(plans::OriginOf(swing), from, lever, BackOver(MoveId::RotateToPeg));
        return Add({MoveId::RotateToLockLever, TurnedBy(swing, angle)});
    }

    WayOut Way(const plans::Plan& likeThis) && { return {std::move(moves), likeThis.to, EndOf(likeThis)}; }

private:
    /// The angle of a swing back, over the same azimuths as in the plan.
    double BackOver(MoveId swing) const {
        const bool isUnderWay = IndexOf(swing) + 1 == stopped.number;
        return -ArcOf(plans.underWay, swing).RotationAngle * (isUnderWay ? stopped.fraction : 1.0);
    }

    const Plans& plans;
    Progress stopped;
    std::vector<WayMove> moves;
};

/// Two ways to a place: a straight line, and a way at the safe height, or higher when an end of the way is higher.
std::vector<std::vector<plans::PlannedMove>> WaysTo(MoveId id, const XYZData& target, const model::Vector3& from,
                                                    double safeHeight) {
    const double height = std::max({safeHeight, from.z, target.ZPosition});
    return {{{id, target}},
            {{id, XYZData{from.x, from.y, height}},
             {id, XYZData{target.XPosition, target.YPosition, height}},
             {id, target}}};
}

/// One way for each of the beginnings, which all lead to the same place.
template <typename Continue> std::vector<WayOut>
WaysFrom(const std::vector<std::vector<plans::PlannedMove>>& beginnings, const Builder& empty, Continue&& goOn) {
    std::vector<WayOut> ways;
    for (const auto& beginning : beginnings) {
        Builder builder = empty;
        for (const plans::PlannedMove& move : beginning) builder.Add(move);
        ways.push_back(goOn(builder));
    }
    return ways;
}

/// The head is locked, and the machine is free or at the lever's ball.
std::vector<WayOut> BackWhileUntouched(const Plans& plans, const Builder& empty, const Progress& stopped,
                                       const Stopped& state, double safeHeight) {
    const auto goOn = [&](Builder& builder) { return std::move(builder).Way(plans.stay); };
    if (stopped.number == 2) {
        Builder builder = empty;
        builder.AddOffTheBall(MoveId::ApproachUnLockLever, MoveId::EngageWithUnLockLever)
            .AddPlan(plans.stay, MoveId::DisengageFromLockLever);
        return {goOn(builder)};
    }
    const XYZData& end = TargetOf(plans.stay, MoveId::DisengageFromLockLever);
    return WaysFrom(WaysTo(MoveId::DisengageFromLockLever, end, state.position, safeHeight), empty, goOn);
}

/// The head is unlocked at the start's angles, or being unlocked: it is locked again.
void BackWhileUnlocked(Builder& builder, const Plans& plans, MoveId under, const model::Vector3& position) {
    switch (under) {
    case MoveId::UnLock:
        builder.AddRest()
            .Add(MoveOf(plans.underWay, MoveId::DisengageFromUnLockLever))
            .AddPlan(plans.stay, MoveId::MoveToLockLeverAtSafeZ);
        break;
    case MoveId::DisengageFromUnLockLever:
        builder.AddRest().AddPlan(plans.stay, MoveId::MoveToLockLeverAtSafeZ);
        break;
    case MoveId::RotateToPeg:
    case MoveId::MoveToPegAtSafeZ:
        builder.AddSwingToLever(position).AddPlan(plans.stay, MoveId::MoveToLockLeverAtSafeZ);
        break;
    case MoveId::ApproachPeg:
        builder.AddPlan(plans.stay, MoveId::DisengageFromPegToSafeZ);
        break;
    default: // EngageWithPeg
        builder.AddPlan(plans.stay, MoveId::DisengageFromPeg);
    }
}

/// The cup is on the peg: A and B are turned back in the reverse order.
void BackOnPeg(Builder& builder, const Plans& plans, MoveId under) {
    const double turnOfB = ArcOf(plans.underWay, MoveId::MoveToBPosition).RotationAngle;
    switch (under) {
    case MoveId::IntermediateAPosition:
        builder.AddReturn(MoveId::MoveToAPosition).AddPlan(plans.stay, MoveId::DisengageFromPeg);
        break;
    case MoveId::MoveToBPosition:
        builder.AddReturn(MoveId::MoveToBPosition).AddPlan(plans.stay, MoveId::MoveToAPosition);
        break;
    default: // MoveToAPosition
        builder.AddReturn(MoveId::IntermediateAPosition)
            .Add({MoveId::MoveToBPosition, TurnedBy(ArcOf(plans.underWay, MoveId::MoveToBPosition), -turnOfB)})
            .AddPlan(plans.stay, MoveId::MoveToAPosition);
    }
}

/// The head is unlocked at the target's angles: it returns to the peg.
void BackWhileIndexed(Builder& builder, const Plans& plans, MoveId under, const model::Vector3& position) {
    const XYZData& aboveLever = TargetOf(plans.underWay, MoveId::MoveToLockLeverAtSafeZ);
    switch (under) {
    case MoveId::DisengageFromPeg:
        builder.AddPlan(plans.back, MoveId::EngageWithPeg);
        break;
    case MoveId::DisengageFromPegToSafeZ:
        builder.AddPlan(plans.back, MoveId::ApproachPeg);
        break;
    case MoveId::RotateToLockLever:
    case MoveId::MoveToLockLeverAtSafeZ:
        builder.AddSwingToPeg(position).AddPlan(plans.back, MoveId::MoveToPegAtSafeZ);
        break;
    case MoveId::EngageWithLockLever:
        builder.AddOffTheBall(MoveId::ApproachLockLever, MoveId::EngageWithLockLever);
        [[fallthrough]];
    default: // ApproachLockLever
        builder.AddStraight(MoveId::MoveToLockLeverAtSafeZ, aboveLever)
            .AddSwingToPeg(plans::VectorOf(aboveLever))
            .AddPlan(plans.back, MoveId::MoveToPegAtSafeZ);
    }
}

} // namespace

model::Vector3 EndOf(const plans::Plan& plan) {
    return plans::VectorOf(TargetOf(plan, MoveId::DisengageFromLockLever));
}

std::vector<WayOut> WaysToFinish(const Plans& plans, const Progress& stopped, const Stopped& state, double safeHeight) {
    Builder builder(plans, stopped);
    if (stopped.number != 1) {
        builder.AddRest();
        const auto next = static_cast<MoveId>(stopped.number);
        if (stopped.number < plans::moveCount) builder.AddPlan(plans.underWay, next);
        return {std::move(builder).Way(plans.underWay)};
    }
    const XYZData& first = TargetOf(plans.underWay, MoveId::ApproachUnLockLever);
    return WaysFrom(WaysTo(MoveId::ApproachUnLockLever, first, state.position, safeHeight), builder,
                    [&](Builder& begun) {
                        begun.AddPlan(plans.underWay, MoveId::EngageWithUnLockLever);
                        return std::move(begun).Way(plans.underWay);
                    });
}

std::vector<WayOut> WaysBack(const Plans& plans, const Progress& stopped, const Stopped& state, double safeHeight) {
    Builder builder(plans, stopped);
    const auto under = static_cast<MoveId>(stopped.number - 1);
    switch (StateInMove(stopped.number)) {
    case State::Untouched:
        return BackWhileUntouched(plans, builder, stopped, state, safeHeight);
    case State::Unlocking:
    case State::Unlocked:
        BackWhileUnlocked(builder, plans, under, state.position);
        return {std::move(builder).Way(plans.stay)};
    case State::OnPeg:
        BackOnPeg(builder, plans, under);
        return {std::move(builder).Way(plans.stay)};
    case State::Indexed:
        BackWhileIndexed(builder, plans, under, state.position);
        return {std::move(builder).Way(plans.back)};
    default: // Locking, Locked: locking is completed, and the head is then indexed back
        builder.AddRest();
        if (under == MoveId::Lock) builder.Add(MoveOf(plans.underWay, MoveId::DisengageFromLockLever));
        builder.AddPlan(plans.back, MoveId::ApproachUnLockLever);
        return {std::move(builder).Way(plans.back)};
    }
}

} // namespace qmv40::recovery
