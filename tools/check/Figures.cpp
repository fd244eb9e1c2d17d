#include "tools/check/Figures.h"

#include <algorithm>

namespace qmv40::check {

namespace {

void KeepSmallest(std::optional<WorstFigure>& worst, const WorstFigure& figure) {
    if (!worst || figure.value < worst->value) worst = figure;
}

void KeepLargest(std::optional<WorstFigure>& worst, const WorstFigure& figure) {
    if (!worst || figure.value > worst->value) worst = figure;
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
        KeepSmallest(clearanceToPoleSphere, figure(move.clearance.toPoleSphere));
        KeepSmallest(clearanceToLevers, figure(move.clearance.toLevers));
        for (const PartClearance& each : move.around) {
            if (pairs.empty()) break;
            KeepSmallest(pairs[each.part * solids + each.solid].smallest, figure(each.atLeast));
        }
        if (move.lowestTip) KeepSmallest(lowestTip, figure(*move.lowestTip));
        if (move.aboveSafeHeight) KeepSmallest(aboveSafeHeight, figure(*move.aboveSafeHeight));
        if (move.run.before.isOnPeg) KeepLargest(pulledOff, figure(move.run.pulledOff));
        if (report.targetMiss && move.run.id == plans::MoveId::MoveToAPosition) {
            KeepLargest(targetMiss, figure(*report.targetMiss));
        }
    }
    ++plans;
}

} // namespace qmv40::check
