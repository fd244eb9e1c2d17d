#include "tools/plans/Tour.h"

#include "tools/component/Calculator.h"

namespace qmv40::plans {

std::vector<Plan> PlanTour(const std::string& geometryFile, const model::HeadAngles& from,
                           const std::vector<model::HeadAngles>& targets) {
    component::Calculator calculator;
    calculator.LoadHeadGeometry(geometryFile);
    calculator.SetCurrentHeadPosition(from);
    std::vector<Plan> plans;
    for (const model::HeadAngles& target : targets) {
        const model::HeadAngles start = calculator.CurrentHeadPosition();
        const RequiredMoves moves = calculator.CalculateMove(target);
        plans.push_back({start, calculator.CurrentHeadPosition(), moves});
    }
    return plans;
}

} // namespace qmv40::plans
