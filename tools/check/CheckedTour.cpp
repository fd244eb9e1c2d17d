#include "tools/check/CheckedTour.h"

namespace qmv40::check {

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
        PlanReport report = tour.plans.empty()
                                ? CheckPlan(head, options, plan, surroundings)
                                : CheckNextPlan(head, options, plan, tour.plans.back().report, surroundings);
        tour.figures.Take(plan, report);
        tour.plans.push_back({std::move(plan), std::move(report)});
    }
    return tour;
}

} // namespace qmv40::check
