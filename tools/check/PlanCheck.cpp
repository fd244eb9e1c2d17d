#include "check/PlanCheck.h"

#include "check/ArcCheck.h"
#include "check/Contracts.h"
#include "check/Tolerances.h"
#include "check/Vectors.h"

#include <algorithm>

namespace check {

namespace {

using K = FindingKind;

const CMaVector up(0.0, 0.0, 1.0);

double LargestDifference(const HeadAngles& left, const HeadAngles& right) {
    return std::max(std::abs(left.a - right.a), std::abs(left.b - right.b));
}

/// One plan on its way through the model.
class PlanCheck {
public:
    PlanCheck(const HeadModel& theHead, const CheckOptions& theOptions, const PlanToCheck& thePlan,
              const std::optional<CMaVector>& machineAt)
        : head(theHead), options(theOptions), plan(thePlan), machine(theHead, thePlan.from, machineAt) {}

    PlanReport Report() &&;
    void CheckStart(const HeadAngles& left);

private:
    void CheckOrder();
    bool RunAll();
    void CheckMove(const PlannedMove& planned, const ExecutedMove& run);
    void CheckStateFor(const ExecutedMove& run);
    void CheckEnding(Contract::Ending ending, const ExecutedMove& run);
    void CheckContactLine(const ContactLine& line, const CMaVector& point);
    void CheckLeverTouched(const ExecutedMove& run);
    void CheckArc(Contract::Arc kind, const ArcData& arc, const ExecutedMove& run);
    WantedArc WantedFor(Contract::Arc kind, const ExecutedMove& run) const;
    WantedArc WantedSwing(const ExecutedMove& run) const;
    void CheckHeight(Contract::Height height, const ExecutedMove& run);
    void CheckRoom(const Room& room);
    void CheckTravel(const Path& path);
    void CheckHeadAngles(const HeadAngles& angles);
    void CheckEnd();

    void Find(K kind, std::optional<double> amount = std::nullopt) { report.findings.push_back({kind, index, amount}); }
    /// Not-a-number is above everything: what cannot be told is not clear.
    void FindAbove(double allowed, K kind, double amount) {
        if (!(amount <= allowed)) Find(kind, amount);
    }

    const HeadModel& head;
    const CheckOptions& options;
    const PlanToCheck& plan;
    Machine machine;
    PlanReport report;
    std::optional<std::size_t> index; ///< of the move that is being checked
};

PlanReport PlanCheck::Report() && {
    CheckOrder();
    const bool ranAll = RunAll();
    index.reset();
    if (ranAll) CheckEnd();
    return std::move(report);
}

void PlanCheck::CheckOrder() {
    for (std::size_t i = 0; i < std::min(plan.moves.size(), moveCount); ++i) {
        index = i;
        if (IndexOf(plan.moves[i].id) != i) return Find(K::MovesOutOfOrder);
    }
    index.reset();
    if (plan.moves.size() != moveCount) Find(K::MoveMissing);
}

bool PlanCheck::RunAll() {
    for (std::size_t i = 0; i < plan.moves.size(); ++i) {
        index = i;
        if (!Machine::CanRun(plan.moves[i])) {
            Find(K::NotANumber);
            return false;
        }
        CheckMove(plan.moves[i], machine.Run(plan.moves[i]));
    }
    return true;
}

void PlanCheck::CheckMove(const PlannedMove& planned, const ExecutedMove& run) {
    const Contract& contract = ContractOf(planned.id);
    report.moves.push_back({run, RoomOf(run, head, options.sizes), std::nullopt});
    if (const auto* const arc = std::get_if<ArcData>(&planned.data)) CheckArc(contract.arc, *arc, run);
    CheckStateFor(run);
    CheckEnding(contract.ending, run);
    if (contract.isVertical) {
        FindAbove(lengthTolerance, K::NotAboveTheApproach, Length(Across(Way(run.path.Start(), run.path.End()), up)));
    }
    CheckHeight(contract.height, run);
    CheckRoom(report.moves.back().room);
    CheckTravel(run.path);
}

void PlanCheck::CheckStateFor(const ExecutedMove& run) {
    const bool isLocked = run.before.lever == LeverState::Locked;
    switch (ContractOf(run.id).arc) {
    case Contract::Arc::AToZero:
    case Contract::Arc::BToTarget:
    case Contract::Arc::AToTarget:
        if (isLocked) Find(K::IndexedWhileLocked);
        FindAbove(lengthTolerance, K::PegTornOut, run.pulledOff);
        CheckHeadAngles(run.after.angles);
        break;
    case Contract::Arc::Push:
        if (run.id == MoveId::UnLock && run.after.lever == LeverState::Locked) Find(K::LeverNotUnlocked);
        if (run.id == MoveId::Lock && run.after.lever == LeverState::Unlocked) Find(K::LeverNotLocked);
        break;
    case Contract::Arc::Swing:
    case Contract::Arc::None:
        break;
    }
    if (run.id == MoveId::EngageWithPeg && isLocked) Find(K::EngagedWhileLocked);
    if (run.id == MoveId::MoveToAPosition) {
        report.targetMiss = Distance(run.path.End(), head.EngagementPosition(plan.to));
        FindAbove(lengthTolerance, K::TargetPositionMissed, *report.targetMiss);
    }
}

void PlanCheck::CheckHeadAngles(const HeadAngles& angles) {
    const double beyondA = std::max(-angles.a, angles.a - 90.0);
    const double beyondB = std::abs(angles.b) - 180.0;
    FindAbove(angleTolerance, K::HeadAngleOutOfRange, std::max(beyondA, beyondB));
}

void PlanCheck::CheckEnding(Contract::Ending ending, const ExecutedMove& run) {
    const CMaVector end = run.path.End();
    const LeverSide side = HeadModel::LeverInReach(run.after.angles);
    switch (ending) {
    case Contract::Ending::Anywhere:
        break;
    case Contract::Ending::BeforeLever:
        CheckContactLine(head.LeverLine(side, run.after.lever), end);
        break;
    case Contract::Ending::AtLever:
        CheckLeverTouched(run);
        break;
    case Contract::Ending::ClearOfLever: {
        const ContactLine line = head.LeverLine(side, run.after.lever);
        FindAbove(lengthTolerance, K::ApproachTooShort, line.distance - Distance(end, line.contact));
        break;
    }
    case Contract::Ending::BeforePeg:
        CheckContactLine(head.PegLine(run.after.angles), end);
        break;
    case Contract::Ending::AtPeg:
        FindAbove(lengthTolerance, K::PegNotEngaged, Distance(end, head.EngagementPosition(run.after.angles)));
        break;
    }
}

void PlanCheck::CheckContactLine(const ContactLine& line, const CMaVector& point) {
    const CMaVector way = Way(line.contact, point);
    const double along = way % line.outward;
    if (along < 0.0) return Find(K::ApproachFromTheWrongSide, -along);
    FindAbove(lengthTolerance, K::ApproachLineMissed, Length(Across(way, line.outward)));
    FindAbove(lengthTolerance, K::ApproachTooShort, line.distance - along);
}

void PlanCheck::CheckLeverTouched(const ExecutedMove& run) {
    const LeverSide side = HeadModel::LeverInReach(run.after.angles);
    if (run.after.touchedBall == OtherLever(side)) return Find(K::WrongLever);
    FindAbove(lengthTolerance, K::LeverNotTouched, Distance(run.path.End(), head.LeverBall(side, run.after.lever)));
}

void PlanCheck::CheckArc(Contract::Arc kind, const ArcData& arc, const ExecutedMove& run) {
    const bool leadsSomewhere = *index + 1 < plan.moves.size() && Machine::CanRun(plan.moves[*index + 1]);
    if (kind == Contract::Arc::Swing && !leadsSomewhere) return;
    for (const Finding& finding : FindingsOfArc(arc, run.path.Start(), WantedFor(kind, run))) {
        Find(finding.kind, finding.amount);
    }
}

WantedArc PlanCheck::WantedFor(Contract::Arc kind, const ExecutedMove& run) const {
    // Each indexing arc is held against its own purpose, not against what an arc before it has spoiled.
    const CMaVector onPeg = head.EngagementPosition(run.before.angles);
    if (kind == Contract::Arc::AToZero) return {onPeg, head.TurnOfA(-plan.from.a, plan.from.b)};
    if (kind == Contract::Arc::BToTarget) return {onPeg, head.TurnOfB(plan.to.b - plan.from.b)};
    if (kind == Contract::Arc::AToTarget) return {onPeg, head.TurnOfA(plan.to.a, plan.to.b)};
    if (kind == Contract::Arc::Swing) return WantedSwing(run);
    const LeverSide side = HeadModel::LeverInReach(run.before.angles);
    const LeverState state = run.id == MoveId::UnLock ? LeverState::Locked : LeverState::Unlocked;
    return {head.LeverBall(side, state), head.LeverPush(side, state)};
}

WantedArc PlanCheck::WantedSwing(const ExecutedMove& run) const {
    const CMaVector centre = head.SwingCentre();
    const CMaVector from = Across(Way(centre, run.path.Start()), up);
    const auto* const next = std::get_if<XYZData>(&plan.moves[*index + 1].data);
    const CMaVector to = next == nullptr ? from : Across(Way(centre, VectorOf(*next)), up);
    const double degrees = DegreesOf(std::atan2((from * to) % up, from % to));
    return {run.path.Start(), {centre, up, degrees}, true};
}

void PlanCheck::CheckHeight(Contract::Height height, const ExecutedMove& run) {
    if (height == Contract::Height::Free) return;
    const double lowest = height == Contract::Height::SafeAtEnd ? run.path.End()[2] : run.path.RangeAlong(up).smallest;
    const double above = lowest - head.SafeHeight();
    report.moves.back().aboveSafeHeight = above;
    FindAbove(lengthTolerance, K::BelowSafeHeight, -above);
}

void PlanCheck::CheckRoom(const Room& room) {
    FindAbove(lengthTolerance, K::TouchesPoleSphere, options.smallestRoom - room.toPoleSphere);
    FindAbove(lengthTolerance, K::TouchesLever, options.smallestRoom - room.toLevers);
}

void PlanCheck::CheckTravel(const Path& path) {
    const CMaVector axes[] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    for (std::size_t i = 0; i < options.travel.size(); ++i) {
        const Path::Range range = path.RangeAlong(axes[i]);
        const TravelLimits& limits = options.travel[i];
        FindAbove(lengthTolerance, K::TravelLimitExceeded,
                  std::max(limits.smallest - range.smallest, range.largest - limits.largest));
    }
}

void PlanCheck::CheckStart(const HeadAngles& left) {
    FindAbove(angleTolerance, K::StartIsNotTheEndBefore, LargestDifference(left, plan.from));
}

void PlanCheck::CheckEnd() {
    const HeadState& state = machine.State();
    FindAbove(angleTolerance, K::TargetNotReached, LargestDifference(state.angles, plan.to));
    if (state.isOnPeg) Find(K::StillOnThePeg);
    if (state.lever != LeverState::Locked) Find(K::NotLockedAtTheEnd);
}

} // namespace

PlanReport CheckPlan(const HeadModel& head, const CheckOptions& options, const PlanToCheck& plan) {
    return PlanCheck(head, options, plan, std::nullopt).Report();
}

PlanReport CheckNextPlan(const HeadModel& head, const CheckOptions& options, const PlanToCheck& plan,
                         const PlanReport& before) {
    if (before.moves.empty()) return CheckPlan(head, options, plan);
    const ExecutedMove& last = before.moves.back().run;
    PlanCheck check(head, options, plan, last.path.End());
    check.CheckStart(last.after.angles);
    return std::move(check).Report();
}

} // namespace check
