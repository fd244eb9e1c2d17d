#include "cli/CheckReport.h"

#include "check/Sampling.h"
#include "cli/Moves.h"
#include "cli/Numbers.h"
#include "cli/Table.h"

namespace {

using check::CheckedMove;
using check::HeadState;
using check::LeverState;
using check::MoveId;
using check::WorstFigure;

constexpr int figureDecimals = 4;

void PrintMoves(const CheckedPlan& checked, const Console& console) {
    Table table({{"#"},
                 {"Move", Table::Align::Left},
                 {"Lever", Table::Align::Left},
                 {"Cup", Table::Align::Left},
                 {"A (deg)"},
                 {"B (deg)"},
                 {"To the pole sphere (mm)"},
                 {"To the levers (mm)"},
                 {"Must touch", Table::Align::Left}});
    for (std::size_t i = 0; i < checked.report.moves.size(); ++i) {
        const CheckedMove& move = checked.report.moves[i];
        const HeadState& after = move.run.after;
        table.AddRow({std::to_string(i + 1), NameOf(move.run.id), NameOf(after.lever),
                      after.isOnPeg ? "on peg" : "free", FixedText(after.angles.a, figureDecimals),
                      FixedText(after.angles.b, figureDecimals), FixedText(move.room.toPoleSphere, figureDecimals),
                      FixedText(move.room.toLevers, figureDecimals), ContactOf(move.run.id)});
    }
    table.Print(console);
}

void PrintFindings(const CheckedPlan& checked, const Console& console) {
    if (checked.report.findings.empty()) return;
    console.out << "\nThe first finding is the one to mend; those after it may follow from it.\n";
    for (const check::Finding& finding : checked.report.findings) {
        const std::string where =
            finding.move ? MoveText(*finding.move, checked.plan.moves[*finding.move].id) : "the plan";
        PrintFinding(finding, where, console);
    }
}

struct NamedFigure {
    const char* name;
    const char* text;
    const std::optional<WorstFigure>& figure;
};

std::vector<NamedFigure> NamedFigures(const check::Figures& figures) {
    return {{"roomToPoleSphere", "least room to the pole sphere", figures.roomToPoleSphere},
            {"roomToLevers", "least room to a lever", figures.roomToLevers},
            {"aboveSafeHeight", "least height above the safe height", figures.aboveSafeHeight},
            {"pulledOff", "farthest that an arc pulls the peg", figures.pulledOff},
            {"targetMiss", "farthest past the target's engagement", figures.targetMiss}};
}

std::string PlanText(const WorstFigure& worst) {
    return ", from " + HeadAnglesText(worst.from) + " to " + HeadAnglesText(worst.to);
}

Json WorstJson(const std::optional<WorstFigure>& worst) {
    if (!worst) return nullptr;
    return {{"value", worst->value},        {"unit", "mm"},
            {"plan", worst->plan + 1},      {"from", AnglesJson(worst->from)},
            {"to", AnglesJson(worst->to)},  {"move", worst->move + 1},
            {"moveName", NameOf(worst->id)}};
}

Json StateJson(const HeadState& state, const CMaVector& position) {
    return {{"lever", NameOf(state.lever)},
            {"onPeg", state.isOnPeg},
            {"A", state.angles.a},
            {"B", state.angles.b},
            {"position", PointJson(position)}};
}

Json PathJson(const check::SweptMove& swept) {
    Json path = Json::array();
    for (const check::Sample& sample : swept.samples) {
        path.push_back({{"fraction", sample.fraction},
                        {"position", PointJson(sample.position)},
                        {"driveCup", PointJson(sample.driveCup)},
                        {"A", sample.angles.a},
                        {"B", sample.angles.b}});
    }
    return path;
}

Json MoveJson(std::size_t index, const CheckedMove& move, const check::SweptMove& swept) {
    const check::Path& path = move.run.path;
    return {{"move", index + 1},
            {"name", NameOf(move.run.id)},
            {"kind", path.IsArc() ? "arc" : "straight"},
            {"before", StateJson(move.run.before, path.Start())},
            {"after", StateJson(move.run.after, path.End())},
            {"roomToPoleSphere", move.room.toPoleSphere},
            {"roomToLevers", move.room.toLevers},
            {"mustTouch", ContactOf(move.run.id)},
            {"aboveSafeHeight", move.aboveSafeHeight ? Json(*move.aboveSafeHeight) : Json(nullptr)},
            {"radius", path.IsArc() ? Json(path.Radius()) : Json(nullptr)},
            {"path", PathJson(swept)}};
}

Json PlanJson(const CheckedPlan& checked, const check::HeadModel& head) {
    const std::vector<check::SweptMove> path = check::SweptPath(head, checked.report);
    Json moves = Json::array();
    for (std::size_t i = 0; i < path.size(); ++i) moves.push_back(MoveJson(i, checked.report.moves[i], path[i]));
    return {{"from", AnglesJson(checked.plan.from)},
            {"to", AnglesJson(checked.plan.to)},
            {"verdict", Verdict(checked.report.findings.size())},
            {"findings", PlanFindingsJson(checked)},
            {"moves", moves}};
}

void PrintHeading(const CheckedTour& tour, std::size_t index, const std::string& whatFollows, const Console& console) {
    const check::PlanToCheck& plan = tour.plans[index].plan;
    const std::string number = tour.plans.size() == 1 ? "" : " " + std::to_string(index + 1);
    console.out << (index == 0 ? "" : "\n")
                << console.Strong("Plan" + number + ": from " + HeadAnglesText(plan.from) + " to " +
                                  HeadAnglesText(plan.to) + " (deg)" + whatFollows)
                << '\n';
}

void PrintFiguresAndVerdict(const CheckedTour& tour, const Console& console) {
    PrintFigures(tour.figures, console);
    const std::size_t plans = tour.plans.size();
    PrintVerdict(tour.Findings(), std::to_string(plans) + (plans == 1 ? " plan" : " plans"), console);
}

} // namespace

void PrintCheckedTour(const CheckedTour& tour, const Console& console) {
    for (std::size_t i = 0; i < tour.plans.size(); ++i) {
        PrintHeading(tour, i, ", as after each move", console);
        console.out << '\n';
        PrintMoves(tour.plans[i], console);
        PrintFindings(tour.plans[i], console);
    }
    PrintFiguresAndVerdict(tour, console);
}

void PrintJudgement(const CheckedTour& tour, const Console& console) {
    for (std::size_t i = 0; i < tour.plans.size(); ++i) {
        PrintHeading(tour, i, "", console);
        PrintFindings(tour.plans[i], console);
    }
    PrintFiguresAndVerdict(tour, console);
}

Json CheckedTourJson(const CheckedTour& tour, const check::HeadModel& head, const check::CheckOptions& options) {
    Json plans = Json::array();
    for (const CheckedPlan& checked : tour.plans) plans.push_back(PlanJson(checked, head));
    return {{"verdict", Verdict(tour.Findings())},
            {"allowances", AllowancesJson(options)},
            {"worst", FiguresJson(tour.figures)},
            {"plans", plans}};
}

const char* NameOf(MoveId id) { return AllMoves()[check::IndexOf(id)].name; }

const char* NameOf(LeverState state) { return state == LeverState::Locked ? "locked" : "open"; }

const char* ContactOf(MoveId id) {
    if (check::IsPegContact(id)) return "peg";
    return check::IsLeverContact(id) ? "lever" : "";
}

std::string MoveText(std::size_t index, MoveId id) { return "move " + std::to_string(index + 1) + " " + NameOf(id); }

std::string AmountText(const check::Finding& finding) {
    if (!finding.amount) return "";
    return " by " + FixedText(*finding.amount, figureDecimals) + " " + check::TextOf(finding.kind).unit;
}

void PrintFinding(const check::Finding& finding, const std::string& where, const Console& console) {
    const check::FindingText& text = check::TextOf(finding.kind);
    console.out << "  " << where << ": " << console.Strong(text.name) << AmountText(finding) << "\n      "
                << text.sentence << "\n      " << text.remedy << '\n';
}

void PrintFigures(const check::Figures& figures, const Console& console) {
    console.out << '\n' << console.Strong("Worst figures") << '\n';
    Table table({{"", Table::Align::Left}, {""}, {"", Table::Align::Left}});
    for (const NamedFigure& named : NamedFigures(figures)) {
        if (!named.figure) continue;
        const WorstFigure& worst = *named.figure;
        table.AddRow({named.text, FixedText(worst.value, figureDecimals) + " mm",
                      MoveText(worst.move, worst.id) + (figures.Plans() > 1 ? PlanText(worst) : "")});
    }
    table.Print(console);
}

const char* Verdict(std::size_t findings) { return findings == 0 ? "clear" : "findings"; }

std::string VerdictText(std::size_t findings) {
    if (findings == 0) return "clear, no findings";
    return std::to_string(findings) + (findings == 1 ? " finding" : " findings");
}

void PrintVerdict(std::size_t findings, const std::string& checked, const Console& console) {
    console.out << '\n' << console.Strong("Verdict: " + VerdictText(findings)) << " in " << checked << ".\n";
}

Json FindingJson(const check::Finding& finding, const check::PlanToCheck& plan) {
    const check::FindingText& text = check::TextOf(finding.kind);
    return {{"move", finding.move ? Json(*finding.move + 1) : Json(nullptr)},
            {"moveName", finding.move ? Json(NameOf(plan.moves[*finding.move].id)) : Json(nullptr)},
            {"name", text.name},
            {"amount", finding.amount ? Json(*finding.amount) : Json(nullptr)},
            {"unit", text.unit},
            {"sentence", text.sentence},
            {"remedy", text.remedy}};
}

Json PlanFindingsJson(const CheckedPlan& checked) {
    Json findings = Json::array();
    for (const check::Finding& finding : checked.report.findings) {
        findings.push_back(FindingJson(finding, checked.plan));
    }
    return findings;
}

Json FiguresJson(const check::Figures& figures) {
    Json document = Json::object();
    for (const NamedFigure& named : NamedFigures(figures)) document[named.name] = WorstJson(named.figure);
    return document;
}

Json AllowancesJson(const check::CheckOptions& options) {
    Json travel = Json::object();
    constexpr const char* axes[] = {"X", "Y", "Z"};
    for (std::size_t i = 0; i < options.travel.size(); ++i) {
        // An end that is not limited is infinite, which a document shows as null.
        travel[axes[i]] = {options.travel[i].smallest, options.travel[i].largest};
    }
    return {{"poleSphereRadius", options.sizes.poleSphereRadius},
            {"leverBallRadius", options.sizes.leverBallRadius},
            {"clearance", options.smallestRoom},
            {"travel", travel}};
}
