#include "tools/check/AllPairs.h"

#include "interface/ErrorCodes.h"
#include "tools/component/Calculator.h"
#include "tools/component/ComponentError.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/MovesJson.h"
#include "tools/text/Numbers.h"
#include "tools/text/Progress.h"
#include "tools/text/Table.h"

namespace qmv40::check {

namespace {

/// Empty when the component refuses the angles.
std::optional<plans::Plan> PlanBetween(component::Calculator& calculator, const model::HeadAngles& from,
                                       const model::HeadAngles& to) {
    try {
        calculator.SetCurrentHeadPosition(from);
        return plans::Plan{from, to, plans::MovesInOrder(calculator.CalculateMove(to))};
    } catch (const component::ComponentError& error) {
        if (error.code == QMV_E_INVALID_TARGET) return std::nullopt;
        throw;
    }
}

void Take(AllPairs& all, const plans::Plan& plan, const PlanReport& report) {
    all.figures.Take(plan, report);
    all.findings += report.findings.size();
    for (const Finding& finding : report.findings) {
        FoundKind& found = all.kinds[finding.kind];
        if (found.count++ == 0) found = {1, finding, plan};
    }
}

} // namespace

std::vector<model::HeadAngles> HeadPositions(int leastA) {
    constexpr int step = 15;
    std::vector<model::HeadAngles> positions;
    for (int a = leastA; a <= 90; a += step) {
        for (int b = -180; b <= 180; b += step) positions.push_back({static_cast<double>(a), static_cast<double>(b)});
    }
    return positions;
}

AllPairs CheckAllPairs(const std::string& geometryFile, const model::HeadModel& head, const CheckOptions& options,
                       std::vector<model::HeadAngles> positions, const text::Console& console) {
    AllPairs all;
    all.positions = std::move(positions);
    Surroundings surroundings(head, options.sizes, options.scene);
    surroundings.ComputeOnlySmallest(options.requiredClearance);
    all.figures = Figures(surroundings);
    component::Calculator calculator;
    calculator.LoadHeadGeometry(geometryFile);
    text::Progress progress(console, "checking all pairs", all.Pairs());
    for (const model::HeadAngles& from : all.positions) {
        for (const model::HeadAngles& to : all.positions) {
            if (const auto plan = PlanBetween(calculator, from, to)) {
                Take(all, *plan, CheckPlan(head, options, *plan, surroundings));
            } else {
                ++all.refused;
            }
        }
        progress.Advance(all.positions.size());
    }
    all.differentMoves = surroundings.DifferentMoves();
    return all;
}

void PrintAllPairs(const AllPairs& all, const CheckOptions& options, const text::Console& console) {
    PrintVerdict(all.findings, std::to_string(all.figures.Plans()) + " plans", console);
    console.out << console.Strong("All pairs of positions: A " + text::ExactText(all.positions.front().a) +
                                  " to 90, B -180 to 180, in steps of 15 (deg)")
                << '\n';
    text::Table table({{"", text::Table::Align::Left}, {""}, {"", text::Table::Align::Left}});
    table.AddRow({"positions", std::to_string(all.positions.size())});
    table.AddRow({"pairs", std::to_string(all.Pairs())});
    table.AddRow(
        {"refused by the component", std::to_string(all.refused), all.refused == 0 ? "" : "A must be 0 to 90"});
    table.AddRow({"planned and checked", std::to_string(all.figures.Plans())});
    table.AddRow({"different moves among them", std::to_string(all.differentMoves)});
    table.Print(console);
    for (const auto& [kind, found] : all.kinds) {
        console.out << '\n'
                    << found.count << " times, first from " << plans::HeadAnglesText(found.plan.from) << " to "
                    << plans::HeadAnglesText(found.plan.to) << ":\n";
        text::PrintFinding(FindingFor(found.first, found.plan), console.out, console.colour);
    }
    PrintFigures(all.figures, options, console);
    PrintAssumptions(options, console);
}

text::Json AllPairsJson(const AllPairs& all, const CheckOptions& options) {
    text::Json findings = text::Json::Array();
    for (const auto& [kind, found] : all.kinds) {
        text::Json first{{"from", plans::AnglesJson(found.plan.from)}, {"to", plans::AnglesJson(found.plan.to)}};
        first.Update(text::FindingJson(FindingFor(found.first, found.plan)));
        findings.PushBack({{"name", TextOf(kind).name}, {"count", found.count}, {"first", first}});
    }
    return {{"verdict", Verdict(all.findings)},
            {"assumptions", AssumptionsJson(options)},
            {"positions", all.positions.size()},
            {"pairs", all.Pairs()},
            {"refused", all.refused},
            {"checked", all.figures.Plans()},
            {"differentMoves", all.differentMoves},
            {"findings", findings},
            {"worst", FiguresJson(all.figures, options)}};
}

} // namespace qmv40::check
