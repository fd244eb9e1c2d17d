#include "tools/check/Figures.h"

namespace qmv40::check {

namespace {

void KeepSmallest(std::optional<WorstFigure>& worst, const WorstFigure& figure) {
    if (!worst || figure.value < worst->value) worst = figure;
}

void KeepLargest(std::optional<WorstFigure>& worst, const WorstFigure& figure) {
    if (!worst || figure.value > worst->value) worst = figure;
}

} // namespace

void Figures::Take(const plans::PlanToCheck& plan, const PlanReport& report) {
    for (std::size_t i = 0; i < report.moves.size(); ++i) {
        const CheckedMove& move = report.moves[i];
        const auto figure = [&](double value) { return WorstFigure{value, plans, plan.from, plan.to, i, move.run.id}; };
        KeepSmallest(roomToPoleSphere, figure(move.room.toPoleSphere));
        KeepSmallest(roomToLevers, figure(move.room.toLevers));
        if (move.aboveSafeHeight) KeepSmallest(aboveSafeHeight, figure(*move.aboveSafeHeight));
        if (move.run.before.isOnPeg) KeepLargest(pulledOff, figure(move.run.pulledOff));
        if (report.targetMiss && move.run.id == plans::MoveId::MoveToAPosition) {
            KeepLargest(targetMiss, figure(*report.targetMiss));
        }
    }
    ++plans;
}

} // namespace qmv40::check
