#include "tools/check/CheckedTour.h"

#include <algorithm>
#include <functional>

namespace qmv40::check {

namespace {

/// Of equal figures the first one is kept.
template <typename IsWorse = std::less<>>
void Keep(std::optional<WorstFigure>& worst, const WorstFigure& figure, IsWorse isWorse = {}) {
    if (!worst || isWorse(figure.value, worst->value)) worst = figure;
}

} // namespace

Figures::Figures(const Surroundings& surroundings) : solids(surroundings.Solids().size()) {
    for (const char* const part : surroundings.Parts()) {
        for (const std::string& solid : surroundings.Solids()) pairs.push_back({part, solid, std::nullopt});
    }
}

std::optional<double> Figures::LargestSphere(const CheckOptions& options) const {
    if (!clearanceToPoleSphere) return std::nullopt;
    double smallest = clearanceToPoleSphere->value;
    for (const PairFigure& pair : pairs) {
        if (pair.solid == poleSphereName && pair.smallest) smallest = std::min(smallest, pair.smallest->value);
    }
    return options.sizes.poleSphereRadius + smallest - options.requiredClearance;
}

void Figures::Take(const plans::Plan& plan, const PlanReport& report) {
    for (std::size_t i = 0; i < report.moves.size(); ++i) {
        const CheckedMove& move = report.moves[i];
        const auto figure = [&](double value) { return WorstFigure{value, plans, plan.from, plan.to, i, move.run.id}; };
        Keep(clearanceToPoleSphere, figure(move.clearance.toPoleSphere));
        Keep(clearanceToLevers, figure(move.clearance.toLevers));
        for (const PartClearance& each : move.around) {
            if (pairs.empty()) break;
            Keep(pairs[each.part * solids + each.solid].smallest, figure(each.atLeast));
        }
        if (move.lowestTip) Keep(lowestTip, figure(*move.lowestTip));
        if (move.aboveSafeHeight) Keep(aboveSafeHeight, figure(*move.aboveSafeHeight));
        if (move.run.before.isOnPeg) Keep(pulledOff, figure(move.run.pulledOff), std::greater());
        if (report.targetMiss && move.run.id == plans::MoveId::MoveToAPosition) {
            Keep(targetMiss, figure(*report.targetMiss), std::greater());
        }
    }
    ++plans;
}

std::size_t CheckedTour::Findings() const {
    std::size_t findings = 0;
    for (const CheckedPlan& checked : plans) findings += checked.report.findings.size();
    return findings;
}

CheckedTour CheckTour(std::vector<plans::Plan> plans, const model::HeadModel& head, const CheckOptions& options) {
    CheckedTour tour;
    Surroundings surroundings(head, options.sizes, options.scene);
    tour.figures = Figures(surroundings);
    for (plans::Plan& plan : plans) {
        const PlanReport* const before = tour.plans.empty() ? nullptr : &tour.plans.back().report;
        PlanReport report = CheckPlan(head, options, plan, surroundings, before);
        tour.figures.Take(plan, report);
        tour.plans.push_back({std::move(plan), std::move(report)});
    }
    return tour;
}

} // namespace qmv40::check
