#include "cli/PlanSelection.h"

#include "cli/Calculator.h"
#include "cli/Failures.h"
#include "cli/Options.h"
#include "cli/PlanFile.h"

namespace {

std::vector<check::PlanToCheck> PlansOfComponent(const PlanSelection& selection) {
    std::vector<check::PlanToCheck> plans;
    for (const Plan& plan : PlanTour(selection.geometry, *selection.from, selection.targets)) {
        plans.push_back({plan.from, plan.to, check::MovesInOrder(plan.moves)});
    }
    return plans;
}

std::vector<check::PlanToCheck> PlansOfFile(const PlanSelection& selection) {
    std::vector<check::PlanToCheck> plans = ReadPlans(selection.file);
    if (selection.from) plans.front().from = *selection.from;
    if (selection.targets.empty()) return plans;
    if (selection.targets.size() != plans.size()) {
        throw UsageError{"--plan: " + selection.file + " holds " + std::to_string(plans.size()) +
                         " plans: give --to as many times, or not at all"};
    }
    for (std::size_t i = 0; i < plans.size(); ++i) plans[i].to = selection.targets[i];
    return plans;
}

} // namespace

void AddPlanSelection(CLI::App& command, PlanSelection& selection) {
    AddGeometryOption(command, selection.geometry);
    AddFromOption(command, selection.from);
    AddToOption(command, selection.targets);
    command.get_option("--to")->required(false);
    command
        .add_option("--plan", selection.file,
                    "Take the plans of this file, as `qmv40 move --json` prints them, edited or not. With --from and "
                    "--to: whether they do what is asked for")
        ->type_name("FILE");
}

std::vector<check::PlanToCheck> SelectedPlans(const PlanSelection& selection) {
    return selection.file.empty() ? PlansOfComponent(selection) : PlansOfFile(selection);
}

std::vector<Plan> PlanTour(const std::string& geometryFile, const HeadAngles& from,
                           const std::vector<HeadAngles>& targets) {
    Calculator calculator;
    calculator.LoadHeadGeometry(geometryFile);
    calculator.SetCurrentHeadPosition(from);
    std::vector<Plan> plans;
    for (const HeadAngles& target : targets) {
        const HeadAngles start = calculator.CurrentHeadPosition();
        const RequiredMoves moves = calculator.CalculateMove(target);
        plans.push_back({start, calculator.CurrentHeadPosition(), moves});
    }
    return plans;
}
