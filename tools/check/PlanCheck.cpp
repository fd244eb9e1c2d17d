#include "tools/check/PlanCheck.h"

#include "tools/check/ArcCheck.h"
#include "tools/check/MoveRequirements.h"
#include "tools/model/Angles.h"
#include "tools/model/Tolerances.h"
#include "tools/motion/Program.h"

#include <algorithm>

namespace qmv40::check {

namespace {

using K = FindingKind;

constexpr model::Vector3 up{0.0, 0.0, 1.0};

/// Runs the moves of one plan on the model and collects the report.
class PlanCheck {
public:
    PlanCheck(const model::HeadModel& theHead, const CheckOptions& theOptions, const plans::Plan& thePlan,
              Surroundings& theSurroundings, const std::optional<model::Vector3>& start = std::nullopt)
        : head(theHead), options(theOptions), plan(thePlan), surroundings(theSurroundings),
          machine(theHead, thePlan.from, start) {}

    /// For a plan after another one. `left`: the head angles at the end of that one.
    void ContinueFrom(const model::HeadAngles& left, std::vector<motion::ExecutedMove> way) {
        report.way = std::move(way);
        FindAbove(model::angleTolerance, K::StartIsNotTheEndBefore, LargestDifference(left, plan.from));
    }

    PlanReport Report() && {
        CheckOrder();
        const bool ranAll = RunAll();
        index.reset();
        if (ranAll) CheckEnd();
        return std::move(report);
    }

private:
    void CheckOrder() {
        for (std::size_t i = 0; i < std::min(plan.moves.size(), plans::moveCount); ++i) {
            index = i;
            if (IndexOf(plan.moves[i].id) != i) return Find(K::MovesOutOfOrder);
        }
        index.reset();
        if (plan.moves.size() != plans::moveCount) Find(K::MoveMissing);
    }

    bool RunAll() {
        for (std::size_t i = 0; i < plan.moves.size(); ++i) {
            index = i;
            if (!motion::Machine::CanRun(plan.moves[i])) {
                Find(K::NotANumber);
                return false;
            }
            CheckMove(plan.moves[i], machine.Run(plan.moves[i]));
        }
        return true;
    }
    CheckedMove Measured(const motion::ExecutedMove& run) { return CheckedMoveOf(run, head, options, surroundings); }

    void AddWayTo(CheckedMove& first) {
        for (const motion::ExecutedMove& leg : report.way) {
            const CheckedMove measured = Measured(leg);
            Take(FindingsOfTravel(leg.path, options));
            first.clearance.toPoleSphere = std::min(first.clearance.toPoleSphere, measured.clearance.toPoleSphere);
            first.clearance.toLevers = std::min(first.clearance.toLevers, measured.clearance.toLevers);
            if (first.lowestTip) first.lowestTip = std::min(*first.lowestTip, *measured.lowestTip);
            for (std::size_t i = 0; i < first.around.size(); ++i) {
                first.around[i].atLeast = std::min(first.around[i].atLeast, measured.around[i].atLeast);
            }
        }
    }

    void CheckMove(const plans::PlannedMove& planned, const motion::ExecutedMove& run) {
        const MoveRequirement& requirement = RequirementOf(planned.id);
        report.moves.push_back(Measured(run));
        if (index == 0) AddWayTo(report.moves.back());
        if (const auto* const arc = std::get_if<ArcData>(&planned.data)) CheckArc(requirement.arc, *arc, run);
        CheckStateFor(run);
        CheckEnding(requirement.ending, run);
        if (requirement.isVertical) {
            FindAbove(model::lengthTolerance, K::NotAboveTheApproach,
                      model::Length(model::Perpendicular(run.path.End() - run.path.Start(), up)));
        }
        CheckHeight(requirement.height, run);
        const CheckedMove& checked = report.moves.back();
        Take(FindingsOfClearance(checked.clearance, checked.around, options, surroundings));
        Take(FindingsOfTravel(run.path, options));
    }

    void CheckStateFor(const motion::ExecutedMove& run) {
        using enum plans::MoveId;
        const bool isLocked = run.before.lever == model::LeverState::Locked;
        if (run.id == IntermediateAPosition || run.id == MoveToBPosition || run.id == MoveToAPosition) {
            if (isLocked) Find(K::IndexedWhileLocked);
            FindAbove(model::lengthTolerance, K::PegTornOut, run.pulledOff);
            FindAbove(model::angleTolerance, K::HeadAngleOutOfRange, BeyondStops(run.after.angles));
        }
        if (run.id == UnLock && run.after.lever == model::LeverState::Locked) Find(K::LeverNotUnlocked);
        if (run.id == Lock && run.after.lever == model::LeverState::Unlocked) Find(K::LeverNotLocked);
        if (run.id == EngageWithPeg && isLocked) Find(K::EngagedWhileLocked);
        if (run.id == MoveToAPosition) {
            report.targetMiss = model::Distance(run.path.End(), head.EngagementPosition(plan.to));
            FindAbove(model::lengthTolerance, K::TargetPositionMissed, *report.targetMiss);
        }
    }

    void CheckEnding(MoveRequirement::Ending ending, const motion::ExecutedMove& run) {
        const model::Vector3 end = run.path.End();
        const model::LeverSide side = model::HeadModel::LeverInReach(run.after.angles);
        switch (ending) {
        case MoveRequirement::Ending::Anywhere:
            break;
        case MoveRequirement::Ending::BeforeLever:
            CheckContactLine(head.LeverLine(side, run.after.lever), end);
            break;
        case MoveRequirement::Ending::AtLever:
            CheckLeverTouched(run);
            break;
        case MoveRequirement::Ending::ClearOfLever: {
            const model::ContactLine line = head.LeverLine(side, run.after.lever);
            FindAbove(model::lengthTolerance, K::ApproachTooShort, line.distance - model::Distance(end, line.contact));
            break;
        }
        case MoveRequirement::Ending::BeforePeg:
            CheckContactLine(head.PegLine(run.after.angles), end);
            break;
        case MoveRequirement::Ending::AtPeg:
            FindAbove(model::lengthTolerance, K::PegNotEngaged,
                      model::Distance(end, head.EngagementPosition(run.after.angles)));
            break;
        }
    }

    void CheckContactLine(const model::ContactLine& line, const model::Vector3& point) {
        const model::Vector3 fromContact = point - line.contact;
        const double along = model::Dot(fromContact, line.outward);
        if (along < 0.0) return Find(K::ApproachFromTheWrongSide, -along);
        FindAbove(model::lengthTolerance, K::ApproachLineMissed,
                  model::Length(model::Perpendicular(fromContact, line.outward)));
        FindAbove(model::lengthTolerance, K::ApproachTooShort, line.distance - along);
    }

    void CheckLeverTouched(const motion::ExecutedMove& run) {
        const model::LeverSide side = model::HeadModel::LeverInReach(run.after.angles);
        if (run.after.touchedBall == model::OtherLever(side)) return Find(K::WrongLever);
        FindAbove(model::lengthTolerance, K::LeverNotTouched,
                  model::Distance(run.path.End(), head.LeverBall(side, run.after.lever)));
    }

    void CheckArc(MoveRequirement::Arc kind, const ArcData& arc, const motion::ExecutedMove& run) {
        const bool leadsSomewhere = *index + 1 < plan.moves.size() && motion::Machine::CanRun(plan.moves[*index + 1]);
        if (kind == MoveRequirement::Arc::Swing && !leadsSomewhere) return;
        Take(FindingsOfArc(arc, run.path.Start(), WantedFor(kind, run)));
    }

    WantedArc WantedFor(MoveRequirement::Arc kind, const motion::ExecutedMove& run) const {
        // Each indexing arc is judged by itself, not by what an earlier arc has spoiled.
        const model::Vector3 onPeg = head.EngagementPosition(run.before.angles);
        if (kind == MoveRequirement::Arc::AToZero) return {onPeg, head.TurnOfA(-plan.from.a, plan.from.b)};
        if (kind == MoveRequirement::Arc::BToTarget) return {onPeg, head.TurnOfB(plan.to.b - plan.from.b)};
        if (kind == MoveRequirement::Arc::AToTarget) return {onPeg, head.TurnOfA(plan.to.a, plan.to.b)};
        if (kind == MoveRequirement::Arc::Swing) return WantedSwing(run);
        const model::LeverSide side = model::HeadModel::LeverInReach(run.before.angles);
        const model::LeverState state =
            run.id == plans::MoveId::UnLock ? model::LeverState::Locked : model::LeverState::Unlocked;
        return {head.LeverBall(side, state), head.LeverPush(side, state)};
    }

    WantedArc WantedSwing(const motion::ExecutedMove& run) const {
        const model::Vector3 centre = head.SwingCentre();
        const model::Vector3 from = model::Perpendicular(run.path.Start() - centre, up);
        const auto* const next = std::get_if<XYZData>(&plan.moves[*index + 1].data);
        const model::Vector3 to = next == nullptr ? from : model::Perpendicular(plans::VectorOf(*next) - centre, up);
        const double degrees =
            model::ToDegrees(std::atan2(model::Dot(model::Cross(from, to), up), model::Dot(from, to)));
        return {run.path.Start(), {centre, up, degrees}, true};
    }

    void CheckHeight(MoveRequirement::Height height, const motion::ExecutedMove& run) {
        if (height == MoveRequirement::Height::Free) return;
        const double lowest =
            height == MoveRequirement::Height::SafeAtEnd ? run.path.End()[2] : run.path.RangeAlong(up).smallest;
        const double above = lowest - head.SafeHeight();
        report.moves.back().aboveSafeHeight = above;
        FindAbove(model::lengthTolerance, K::BelowSafeHeight, -above);
    }

    void Take(std::vector<Finding> findings) {
        for (Finding& finding : findings) {
            finding.move = index;
            report.findings.push_back(std::move(finding));
        }
    }

    void CheckEnd() {
        const motion::HeadState& state = machine.State();
        FindAbove(model::angleTolerance, K::TargetNotReached, LargestDifference(state.angles, plan.to));
        if (state.isOnPeg) Find(K::StillOnThePeg);
        if (state.lever != model::LeverState::Locked) Find(K::NotLockedAtTheEnd);
    }

    void Find(K kind, std::optional<double> amount = std::nullopt) { report.findings.push_back({kind, index, amount}); }
    /// Adds a finding when the amount is above what is allowed, or is not a number.
    void FindAbove(double allowed, K kind, double amount) {
        if (!(amount <= allowed)) Find(kind, amount);
    }

    const model::HeadModel& head;
    const CheckOptions& options;
    const plans::Plan& plan;
    Surroundings& surroundings;
    motion::Machine machine;
    PlanReport report;
    std::optional<std::size_t> index; ///< of the move that is being checked
};

/// The way from the end of the plan before: up, and across to above the first position. Empty when the plan begins with
/// an arc or with a number that is not finite.
std::vector<motion::ExecutedMove> WayTo(const plans::Plan& plan, const model::HeadModel& head,
                                        const motion::ExecutedMove& last) {
    std::vector<motion::ExecutedMove> way;
    const auto* const first = plan.moves.empty() ? nullptr : std::get_if<XYZData>(&plan.moves.front().data);
    if (first == nullptr || !motion::Machine::CanRun(plan.moves.front())) return way;
    motion::HeadState state = last.after;
    state.touchedBall.reset();
    model::Vector3 position = last.path.End();
    for (const model::Vector3& corner : motion::CornersOfWay(position, plans::VectorOf(*first), head.SafeHeight())) {
        way.push_back({plan.moves.front().id, model::Path::Straight(position, corner), state, state, 0.0});
        position = corner;
    }
    return way;
}

} // namespace

std::vector<Finding> FindingsOfClearance(const Clearance& clearance, const PartClearances& around,
                                         const CheckOptions& options, const Surroundings& surroundings) {
    std::vector<Finding> findings;
    // Not-a-number is a finding too: an unknown clearance is not enough.
    const auto find = [&](K kind, double clear) {
        const double missing = options.requiredClearance - clear;
        if (missing <= model::lengthTolerance) return false;
        findings.push_back({kind, {}, missing});
        return true;
    };
    find(K::TouchesPoleSphere, clearance.toPoleSphere);
    find(K::TouchesLever, clearance.toLevers);
    for (const PartClearance& each : around) {
        if (!find(K::TouchesObstacle, each.atLeast)) continue;
        findings.back().meeting = {surroundings.Parts()[each.part], surroundings.Solids()[each.solid]};
    }
    return findings;
}

std::vector<Finding> FindingsOfTravel(const model::Path& path, const CheckOptions& options) {
    std::vector<Finding> findings;
    for (std::size_t axis = 0; axis < options.travel.size(); ++axis) {
        const TravelLimits& limits = options.travel[axis];
        model::Vector3 direction;
        direction[axis] = 1.0;
        const model::Path::Range range = path.RangeAlong(direction);
        const double beyond = std::max(limits.smallest - range.smallest, range.largest - limits.largest);
        if (!(beyond <= model::lengthTolerance)) findings.push_back({K::TravelLimitExceeded, {}, beyond});
    }
    return findings;
}

double BeyondStops(const model::HeadAngles& angles) {
    return std::max({-angles.a, angles.a - 90.0, std::abs(angles.b) - 180.0});
}

double LargestDifference(const model::HeadAngles& left, const model::HeadAngles& right) {
    return std::max(std::abs(left.a - right.a), std::abs(left.b - right.b));
}

CheckedMove CheckedMoveOf(const motion::ExecutedMove& run, const model::HeadModel& head, const CheckOptions& options,
                          Surroundings& surroundings) {
    return {run, ClearanceOf(run, head, options.sizes), surroundings.Of(run), LowestTip(run, head, options.scene.parts),
            std::nullopt};
}

PlanReport CheckPlan(const model::HeadModel& head, const CheckOptions& options, const plans::Plan& plan,
                     Surroundings& surroundings, const PlanReport* before) {
    if (before == nullptr || before->moves.empty()) return PlanCheck(head, options, plan, surroundings).Report();
    const motion::ExecutedMove& last = before->moves.back().run;
    std::vector<motion::ExecutedMove> way = WayTo(plan, head, last);
    const model::Vector3 start = way.empty() ? last.path.End() : way.back().path.End();
    PlanCheck check(head, options, plan, surroundings, start);
    check.ContinueFrom(last.after.angles, std::move(way));
    return std::move(check).Report();
}

} // namespace qmv40::check
