#include "tools/recovery/ShownWays.h"

namespace qmv40::recovery {

namespace {

/// Each move gets the name of the contact that it makes or leaves, because it is judged by that name.
check::CheckedPlan Shown(const CheckedWay& checked, const StoppedPlan& plan, const Question& question,
                         const Stopped& state) {
    check::CheckedPlan shown{{state.head.angles, checked.way.angles, {}}, {}};
    check::Surroundings surroundings(plan.Head(), question.check.sizes, question.check.scene);
    motion::Machine machine = motion::Machine::InTheMiddle(plan.Head(), state.head, state.position);
    for (const WayMove& each : checked.way.moves) {
        shown.plan.moves.push_back({each.contact, each.move.data});
        if (!motion::Machine::CanRun(each.move)) continue;
        const motion::ExecutedMove run = machine.Run(shown.plan.moves.back());
        shown.report.moves.push_back({run, check::ClearanceOf(run, plan.Head(), question.check.sizes),
                                      surroundings.Of(run),
                                      check::LowestTip(run, plan.Head(), question.check.scene.parts), std::nullopt});
    }
    if (checked.finding) shown.report.findings.push_back(*checked.finding);
    return shown;
}

} // namespace

check::CheckedTour ShownWays(const StoppedPlan& plan, const Question& question, const Recovery& recovery) {
    check::CheckedTour tour;
    if (recovery.stop.state == State::Unknown) return tour;
    const Stopped state = plan.StateOf(recovery.stop, question.standing);
    for (const auto& way : {recovery.finish, recovery.backOut}) {
        tour.plans.push_back(Shown(*way, plan, question, state));
        tour.figures.Take(tour.plans.back().plan, tour.plans.back().report);
    }
    return tour;
}

} // namespace qmv40::recovery
