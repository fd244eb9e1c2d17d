#include "tools/plans/Tour.h"

#include "tools/component/Calculator.h"
#include "tools/component/ComponentError.h"

namespace qmv40::plans {

namespace {

Plan NextPlan(component::Calculator& calculator, const model::HeadAngles& target) {
    const model::HeadAngles start = calculator.CurrentHeadPosition();
    const RequiredMoves moves = calculator.CalculateMove(target);
    return {start, calculator.CurrentHeadPosition(), MovesInOrder(moves)};
}

} // namespace

std::vector<Plan> PlanTour(const std::string& geometryFile, std::span<const model::HeadAngles> positions) {
    component::Calculator calculator;
    calculator.LoadHeadGeometry(geometryFile);
    calculator.SetCurrentHeadPosition(positions.front());
    std::vector<Plan> plans;
    try {
        for (const model::HeadAngles& target : positions.subspan(1)) plans.push_back(NextPlan(calculator, target));
    } catch (component::ComponentError& error) {
        if (positions.size() > 2) error.plan = plans.size() + 1;
        throw;
    }
    return plans;
}

} // namespace qmv40::plans
