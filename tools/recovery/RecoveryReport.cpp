#include "tools/recovery/RecoveryReport.h"

#include "tools/check/CheckReport.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/MoveTable.h"
#include "tools/plans/MovesJson.h"
#include "tools/text/Finding.h"
#include "tools/text/Numbers.h"

#include <algorithm>

namespace qmv40::recovery {

namespace {

constexpr int lengthDecimals = 4;

std::string Length(double millimetres) { return text::FixedText(millimetres, lengthDecimals) + " mm"; }

std::string AnglesText(const model::HeadAngles& angles) { return plans::HeadAnglesText(ReadableAngles(angles)); }

std::string MoveText(std::size_t number) {
    return "move " + std::to_string(number) + " (" + plans::NameOf(static_cast<plans::MoveId>(number - 1)) + ")";
}

std::string CallText(const model::HeadAngles& angles) {
    return "SetCurrentHeadPosition(" + text::ExactText(angles.a) + ", " + text::ExactText(angles.b) + ")";
}

/// How a person recognises that the head is in the state.
std::string LookOf(State state, const plans::Plan& plan) {
    const std::string stands = " and the head stands at " + AnglesText(state < State::OnPeg ? plan.from : plan.to);
    switch (state) {
    case State::Untouched:
    case State::Locked:
        return "the lever is locked" + stands;
    case State::Unlocking:
        return "the lever is part of the way from locked to unlocked" + stands;
    case State::Unlocked:
    case State::Indexed:
        return "the lever is unlocked, the cup is off the peg" + stands;
    case State::OnPeg:
        return "the lever is unlocked and the cup sits on the peg";
    case State::Locking:
        return "the lever is part of the way from unlocked to locked" + stands;
    default:
        return "nothing is known";
    }
}

std::string Capitalised(std::string text) {
    text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return text;
}

std::string MovesText(const std::vector<Fit>& fits, State state) {
    std::string numbers;
    std::size_t before = 0;
    for (const Fit& fit : fits) {
        if (fit.StateThere() != state || fit.place.number == before) continue;
        before = fit.place.number;
        numbers += (numbers.empty() ? "" : ", ") + std::to_string(before);
    }
    return (numbers.find(',') == std::string::npos ? "move " : "moves ") + numbers;
}

std::string SeveralStates(const Answered& answered) {
    const std::vector<Fit>& fits = answered.recovery.stop.fits;
    std::string why = "The position fits more than one state.";
    State before = State::Unknown;
    for (const Fit& fit : fits) {
        if (fit.StateThere() == before) continue;
        before = fit.StateThere();
        why += std::string(" ") + Capitalised(NameOf(before)) + " (" + MovesText(fits, before) +
               "): " + LookOf(before, answered.plan.UnderWay()) + ".";
    }
    return why + " Look which of them it is, and give the move with --during, or the last one that was finished with "
                 "--after. Where no look tells them apart, the log or the journal of the program does. Move nothing "
                 "before.";
}

std::string SeveralOrientations(const Answered& answered) {
    std::string why = "The cup is on the peg, and the position fits more than one orientation:";
    const std::vector<Fit>& fits = answered.recovery.stop.fits;
    for (const Fit& fit : fits) {
        why += (&fit == &fits.front() ? " " : "; ") + AnglesText(fit.angles) + " in " + MoveText(fit.place.number);
    }
    return why + ". Look how the head is tilted and which way its cable is wound, or into the log of the program, and "
                 "give the move with --during or --after. Move nothing before.";
}

std::string OffThePlan(const Answered& answered) {
    const Fit& nearest = answered.recovery.stop.nearest;
    const bool isMoveKnown = answered.question.known.kind != KnownMove::Kind::Nothing;
    const std::string off = "The machine stands " + Length(nearest.distance) + " off ";
    const std::string move = MoveText(nearest.place.number);
    return off +
           (isMoveKnown ? move + ", in which it is said to have stopped"
                        : "every move of the plan; the nearest is " + move) +
           ". A position counts as on a path within " + Length(answered.question.positionError) +
           ". Somebody has moved the machine since, or another plan was under way. Move nothing: look at the lever, "
           "the cup and the head; docs/recovery.md says what to do by hand.";
}

std::string WhereItStopped(const Answered& answered) {
    const Stop& stop = answered.recovery.stop;
    const Fit& fit = stop.Place();
    std::string text = "The machine stands in " + MoveText(fit.place.number);
    if (fit.place.number > 1) {
        constexpr int decimals = 1;
        text += ", " + text::FixedText(100.0 * fit.place.fraction, decimals) + " % of the way, " +
                Length(fit.distance) + " off its path";
    }
    return text + ".";
}

/// Why a way must not be run, or which call a program has to make after it.
std::string WayText(const CheckedWay& way, const char* name) {
    if (way.IsSafe()) return std::string(" After `") + name + "`: " + CallText(way.way.angles) + ".";
    const check::Finding& finding = *way.finding;
    const std::string where =
        finding.move ? MoveText(IndexOf(way.way.moves[*finding.move].move.id) + 1) : std::string("its end");
    const check::FindingText& text = TextOf(finding.kind);
    const std::string amount = check::AmountText(finding);
    return std::string(" `") + name + "` is not safe, at " + where + ": " + text.name + (amount.empty() ? "" : " by ") +
           amount + ". " + text.sentence;
}

std::string ByHand(const Recovery& recovery) {
    if (recovery.finish->IsSafe() || recovery.backOut->IsSafe()) return "";
    return " By hand: with the machine at its slowest, go back along the move that it was in, free the cup or the ball "
           "that it touches, rise to the safe height, and lock the head by its lever.";
}

void PrintWay(const CheckedWay& way, const Answered& answered, const char* title, const text::Console& console) {
    if (!way.IsSafe()) return;
    console.out << '\n'
                << console.Strong(std::string(title) + ", locked at " + AnglesText(way.way.angles) + " (deg)")
                << "\n\n";
    plans::PrintMoveTable(way.Placed(answered.question.standing), console);
    console.out << "Then the program calls " << CallText(way.way.angles) << ".\n";
}

text::Json NumbersJson(const std::vector<std::size_t>& numbers) {
    text::Json list = text::Json::Array();
    for (const std::size_t number : numbers) list.PushBack(number);
    return list;
}

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

std::string Why(const Answered& answered) {
    const Stop& stop = answered.recovery.stop;
    if (stop.fits.empty()) return OffThePlan(answered);
    if (stop.hasSeveralOrientations) return SeveralOrientations(answered);
    if (stop.state == State::Unknown) return SeveralStates(answered);
    return WhereItStopped(answered) + WayText(*answered.recovery.finish, "finish") +
           WayText(*answered.recovery.backOut, "backOut") + ByHand(answered.recovery);
}

void PrintRecovery(const Answered& answered, const text::Console& console) {
    const Recovery& recovery = answered.recovery;
    const State state = recovery.stop.state;
    console.out << console.Strong(std::string("State: ") + NameOf(state)) << '\n';
    if (state != State::Unknown) {
        const std::string angles = AnglesText(recovery.stop.Place().angles) + " (deg)";
        console.out << text::Wrapped("  ", Capitalised(LookOf(state, answered.plan.UnderWay())) + ". The head is at " +
                                               angles + ".");
    }
    console.out << text::Wrapped("  ", Why(answered));
    if (state == State::Unknown) return;
    PrintWay(*recovery.finish, answered, "Finish", console);
    PrintWay(*recovery.backOut, answered, "Back out", console);
    console.out << "\nLook at both in `qmv40 view --recover` before anything moves.\n";
}

text::Json RecoveryJson(const Answered& answered) {
    const Recovery& recovery = answered.recovery;
    const bool isKnown = recovery.stop.state != State::Unknown;
    text::Json document{{"state", NameOf(recovery.stop.state)},
                        {"stoppedIn", NumbersJson(recovery.stop.Numbers())},
                        {"A", isKnown ? text::Json(recovery.stop.Place().angles.a) : text::Json(nullptr)},
                        {"B", isKnown ? text::Json(recovery.stop.Place().angles.b) : text::Json(nullptr)}};
    const auto addWay = [&](const char* name, const std::optional<CheckedWay>& way) {
        if (way && way->IsSafe()) document[name] = plans::MovesJson(way->Placed(answered.question.standing));
    };
    addWay("finish", recovery.finish);
    addWay("backOut", recovery.backOut);
    document["why"] = Why(answered);
    return document;
}

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
