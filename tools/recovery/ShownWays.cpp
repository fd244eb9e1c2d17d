#include "tools/recovery/ShownWays.h"

namespace qmv40::recovery {

namespace {

/// Each move gets the name of the contact that it makes or leaves, because it is judged by that name.
check::CheckedPlan Shown(const CheckedWay& checked, const StoppedPlan& plan, const Question& question,
                         const Stopped& state, check::Surroundings& surroundings) {
    check::CheckedPlan shown{{ReadableAngles(state.head.angles), checked.way.angles, {}}, {}};
    motion::Machine machine = motion::Machine::InTheMiddle(plan.Head(), state.head, state.position);
    for (const WayMove& each : checked.way.moves) {
        shown.plan.moves.push_back({each.contact, each.move.data});
        if (!motion::Machine::CanRun(each.move)) continue;
        const motion::ExecutedMove run = machine.Run(shown.plan.moves.back());
        shown.report.moves.push_back(check::CheckedMoveOf(run, plan.Head(), question.check, surroundings));
    }
    if (checked.finding) shown.report.findings.push_back(*checked.finding);
    return shown;
}

check::CheckedTour UnknownStop(const StoppedPlan& plan, const Question& question) {
    check::CheckedTour tour = check::CheckTour({plan.UnderWay()}, plan.Head(), question.check);
    std::vector<check::Finding>& findings = tour.plans.front().report.findings;
    findings.insert(findings.begin(), {check::FindingKind::StopUnknown, std::nullopt, std::nullopt});
    return tour;
}

} // namespace

check::CheckedTour ShownWays(const StoppedPlan& plan, const Question& question, const Recovery& recovery) {
    if (recovery.stop.state == State::Unknown) return UnknownStop(plan, question);
    check::Surroundings surroundings(plan.Head(), question.check.sizes, question.check.scene);
    check::CheckedTour tour;
    tour.figures = check::Figures(surroundings);
    const Stopped state = plan.StateOf(recovery.stop, question.standing);
    for (const auto& way : {recovery.finish, recovery.backOut}) {
        tour.plans.push_back(Shown(*way, plan, question, state, surroundings));
        tour.figures.Take(tour.plans.back().plan, tour.plans.back().report);
    }
    return tour;
}

} // namespace qmv40::recovery
