#include "tools/check/CheckReport.h"

#include "tools/motion/Sampling.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/MoveTable.h"
#include "tools/plans/Moves.h"
#include "tools/plans/MovesJson.h"
#include "tools/text/Numbers.h"
#include "tools/text/Table.h"

#include <algorithm>

namespace qmv40::check {

namespace {

using model::LeverState;
using motion::HeadState;
using plans::MoveId;

constexpr int figureDecimals = 4;
// Clearances are computed to 0.01 mm.
constexpr int clearanceDecimals = 2;

std::string FigureText(double figure) { return text::FixedText(figure, figureDecimals); }

void PrintMoves(const CheckedPlan& checked, const text::Console& console) {
    text::Table table({{"#"},
                       {"Move", text::Table::Align::Left},
                       {"Lever", text::Table::Align::Left},
                       {"Cup", text::Table::Align::Left},
                       {"A (deg)"},
                       {"B (deg)"},
                       {"Sphere (mm)"},
                       {"Levers (mm)"},
                       {"Touches", text::Table::Align::Left}});
    for (std::size_t i = 0; i < checked.report.moves.size(); ++i) {
        const CheckedMove& move = checked.report.moves[i];
        const HeadState& after = move.run.after;
        table.AddRow({std::to_string(i + 1), NameOf(move.run.id), NameOf(after.lever),
                      after.isOnPeg ? "on peg" : "free", FigureText(after.angles.a), FigureText(after.angles.b),
                      FigureText(move.clearance.toPoleSphere), FigureText(move.clearance.toLevers),
                      ContactOf(move.run.id)});
    }
    table.Print(console);
}

void PrintFindings(const CheckedPlan& checked, const text::Console& console) {
    if (checked.report.findings.empty()) return;
    console.out << "\nThe first finding is the one to mend; those after it may follow from it.\n";
    text::PrintFindings(FindingsOf(checked), console.out, console.colour);
}

struct NamedFigure {
    const char* name;
    const char* text;
    const std::optional<WorstFigure>& figure;
};

std::vector<NamedFigure> NamedFigures(const Figures& figures) {
    return {{"clearanceToPoleSphere", "smallest clearance to the pole sphere", figures.clearanceToPoleSphere},
            {"clearanceToLevers", "smallest clearance to a lever", figures.clearanceToLevers},
            {"lowestTip", "lowest point of the stylus tip, Z", figures.lowestTip},
            {"aboveSafeHeight", "least height above the safe height", figures.aboveSafeHeight},
            {"pulledOff", "farthest that an arc pulls the peg", figures.pulledOff},
            {"targetMiss", "farthest past the target's engagement", figures.targetMiss}};
}

std::string MoveText(std::size_t index, MoveId id) { return "move " + std::to_string(index + 1) + " " + NameOf(id); }

std::string WhereText(const WorstFigure& worst, const Figures& figures) {
    std::string where = MoveText(worst.move, worst.id);
    if (figures.Plans() > 1) {
        where += ", from " + plans::HeadAnglesText(worst.from) + " to " + plans::HeadAnglesText(worst.to);
    }
    return where;
}

/// For each part and each obstacle that were compared, the smallest clearance.
void PrintPartClearances(const Figures& figures, const text::Console& console) {
    const auto isKnown = [](const PairFigure& pair) { return pair.smallest.has_value(); };
    if (std::ranges::none_of(figures.Pairs(), isKnown)) return;
    console.out << '\n' << console.Strong("Smallest clearance of each part, at least") << '\n';
    text::Table table(
        {{"", text::Table::Align::Left}, {"", text::Table::Align::Left}, {""}, {"", text::Table::Align::Left}});
    for (const PairFigure& pair : figures.Pairs()) {
        if (!pair.smallest) continue;
        table.AddRow({pair.part, "to " + pair.solid, text::FixedText(pair.smallest->value, clearanceDecimals) + " mm",
                      WhereText(*pair.smallest, figures)});
    }
    table.Print(console);
}

text::Json WorstJson(const std::optional<WorstFigure>& worst) {
    if (!worst) return nullptr;
    return {{"value", worst->value},
            {"unit", "mm"},
            {"plan", worst->plan + 1},
            {"from", plans::AnglesJson(worst->from)},
            {"to", plans::AnglesJson(worst->to)},
            {"move", worst->move + 1},
            {"moveName", NameOf(worst->id)}};
}

/// Each pair of part and obstacle that was computed, and where its clearance is smallest.
text::Json PairsJson(const Figures& figures) {
    text::Json pairs = text::Json::Array();
    for (const PairFigure& pair : figures.Pairs()) {
        if (!pair.smallest) continue;
        text::Json& figure = pairs.PushBack({{"part", pair.part}, {"obstacle", pair.solid}});
        figure.Update(WorstJson(pair.smallest));
    }
    return pairs;
}

text::Json AroundJson(const PartClearances& around, const Figures& figures) {
    text::Json list = text::Json::Array();
    for (const PartClearance& each : around) {
        const PairFigure& pair = figures.PairOf(each);
        list.PushBack({{"part", pair.part}, {"obstacle", pair.solid}, {"clearance", each.atLeast}});
    }
    return list;
}

text::Json StateJson(const HeadState& state, const model::Vector3& position) {
    return {{"lever", NameOf(state.lever)},
            {"onPeg", state.isOnPeg},
            {"A", state.angles.a},
            {"B", state.angles.b},
            {"position", text::PointJson(position)}};
}

text::Json PathJson(const std::vector<motion::Sample>& samples) {
    text::Json path = text::Json::Array();
    for (const motion::Sample& sample : samples) {
        path.PushBack({{"fraction", sample.fraction},
                       {"position", text::PointJson(sample.position)},
                       {"driveCup", text::PointJson(sample.driveCup)},
                       {"A", sample.angles.a},
                       {"B", sample.angles.b}});
    }
    return path;
}

text::Json MoveJson(std::size_t index, const CheckedMove& move, const model::HeadModel& head, const Figures& figures) {
    const model::Path& path = move.run.path;
    return {{"move", index + 1},
            {"name", NameOf(move.run.id)},
            {"kind", path.IsArc() ? "arc" : "straight"},
            {"before", StateJson(move.run.before, path.Start())},
            {"after", StateJson(move.run.after, path.End())},
            {"clearanceToPoleSphere", move.clearance.toPoleSphere},
            {"clearanceToLevers", move.clearance.toLevers},
            {"mustTouch", ContactOf(move.run.id)},
            {"clearances", AroundJson(move.around, figures)},
            {"lowestTip", move.lowestTip},
            {"aboveSafeHeight", move.aboveSafeHeight},
            {"radius", path.IsArc() ? text::Json(path.Radius()) : text::Json(nullptr)},
            {"path", PathJson(motion::SamplesOf(head, move.run))}};
}

text::Json PlanJson(const CheckedPlan& checked, const model::HeadModel& head, const Figures& figures) {
    text::Json moves = text::Json::Array();
    const std::vector<CheckedMove>& run = checked.report.moves;
    for (std::size_t i = 0; i < run.size(); ++i) moves.PushBack(MoveJson(i, run[i], head, figures));
    return {{"from", plans::AnglesJson(checked.plan.from)},
            {"to", plans::AnglesJson(checked.plan.to)},
            {"verdict", Verdict(checked.report.findings.size())},
            {"findings", text::FindingsJson(FindingsOf(checked))},
            {"moves", moves}};
}

} // namespace

void PrintCheckedTour(const CheckedTour& tour, const CheckOptions& options, bool withMoves,
                      const text::Console& console) {
    const std::size_t count = tour.plans.size();
    PrintVerdict(tour.Findings(), std::to_string(count) + (count == 1 ? " plan" : " plans"), console);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string title = plans::PlanTitle(tour.plans[i].plan, i, count);
        console.out << (i == 0 ? "" : "\n") << console.Strong(title + (withMoves ? ", as after each move" : ""))
                    << '\n';
        PrintFindings(tour.plans[i], console);
        if (!withMoves) continue;
        console.out << '\n';
        PrintMoves(tour.plans[i], console);
    }
    PrintFigures(tour.figures, options, console);
    PrintAssumptions(options, console);
}

text::Json CheckedTourJson(const CheckedTour& tour, const model::HeadModel& head, const CheckOptions& options) {
    text::Json plans = text::Json::Array();
    for (const CheckedPlan& checked : tour.plans) plans.PushBack(PlanJson(checked, head, tour.figures));
    return {{"verdict", Verdict(tour.Findings())},
            {"assumptions", AssumptionsJson(options)},
            {"worst", FiguresJson(tour.figures, options)},
            {"plans", plans}};
}

const char* NameOf(LeverState state) { return state == LeverState::Locked ? "locked" : "open"; }

const char* ContactOf(MoveId id) {
    if (IsPegContact(id)) return "peg";
    return IsLeverContact(id) ? "lever" : "";
}

std::string AmountText(const Finding& finding) {
    if (!finding.amount) return "";
    const std::string amount = FigureText(*finding.amount) + " " + TextOf(finding.kind).unit;
    return finding.meeting ? amount + " (" + finding.meeting->part + " to " + finding.meeting->obstacle + ")" : amount;
}

void PrintFigures(const Figures& figures, const CheckOptions& options, const text::Console& console) {
    console.out << '\n' << console.Strong("Worst figures") << '\n';
    text::Table table({{"", text::Table::Align::Left}, {""}, {"", text::Table::Align::Left}});
    for (const NamedFigure& named : NamedFigures(figures)) {
        if (!named.figure) continue;
        table.AddRow({named.text, FigureText(named.figure->value) + " mm", WhereText(*named.figure, figures)});
    }
    if (const std::optional<double> largest = figures.LargestSphere(options)) {
        table.AddRow({"largest sphere radius still clear", FigureText(*largest) + " mm"});
    }
    table.Print(console);
    PrintPartClearances(figures, console);
}

const char* Verdict(std::size_t findings) { return findings == 0 ? "clear" : "findings"; }

std::string VerdictText(std::size_t findings) {
    if (findings == 0) return "clear, no findings";
    return std::to_string(findings) + (findings == 1 ? " finding" : " findings");
}

void PrintVerdict(std::size_t findings, const std::string& checked, const text::Console& console) {
    console.out << console.Strong("Verdict: " + VerdictText(findings)) << " in " << checked << ".\n\n";
}

text::Finding FindingFor(const Finding& finding, const plans::Plan& plan) {
    const FindingText& kind = TextOf(finding.kind);
    text::Json number;
    text::Json name;
    std::string place = "the plan";
    if (finding.move) {
        const MoveId id = plan.moves[*finding.move].id;
        number = *finding.move + 1;
        name = NameOf(id);
        place = MoveText(*finding.move, id);
    }
    return {.name = kind.name,
            .severity = text::Severity::Fault,
            .sentence = kind.sentence,
            .remedy = kind.remedy,
            .place = place,
            .amount = AmountText(finding),
            .details = {{"move", number},
                        {"moveName", name},
                        {"amount", finding.amount},
                        {"unit", kind.unit},
                        {"part", finding.meeting ? text::Json(finding.meeting->part) : text::Json()},
                        {"obstacle", finding.meeting ? text::Json(finding.meeting->obstacle) : text::Json()}}};
}

std::vector<text::Finding> FindingsOf(const CheckedPlan& checked) {
    std::vector<text::Finding> findings;
    findings.reserve(checked.report.findings.size());
    for (const Finding& finding : checked.report.findings) findings.push_back(FindingFor(finding, checked.plan));
    return findings;
}

text::Json FiguresJson(const Figures& figures, const CheckOptions& options) {
    text::Json document = text::Json::Object();
    for (const NamedFigure& named : NamedFigures(figures)) document[named.name] = WorstJson(named.figure);
    document["clearances"] = PairsJson(figures);
    document["largestSphereRadius"] = figures.LargestSphere(options);
    return document;
}

} // namespace qmv40::check
