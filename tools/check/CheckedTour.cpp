#include "tools/check/CheckedTour.h"

#include "tools/check/HeadFile.h"
#include "tools/component/Calculator.h"
#include "tools/component/ComponentError.h"
#include "tools/text/Text.h"
#include "tools/text/WideText.h"

namespace qmv40::check {

std::size_t CheckedTour::Findings() const {
    std::size_t findings = 0;
    for (const CheckedPlan& checked : plans) findings += checked.report.findings.size();
    return findings;
}

CheckedTour CheckTour(std::vector<plans::PlanToCheck> plans, const model::HeadModel& head,
                      const CheckOptions& options) {
    CheckedTour tour;
    for (plans::PlanToCheck& plan : plans) {
        PlanReport report = tour.plans.empty() ? CheckPlan(head, options, plan)
                                               : CheckNextPlan(head, options, plan, tour.plans.back().report);
        tour.figures.Take(plan, report);
        tour.plans.push_back({std::move(plan), std::move(report)});
    }
    return tour;
}

model::HeadModel LoadModel(const std::string& geometryFile) {
    component::Calculator().LoadHeadGeometry(geometryFile);
    const std::wstring name = text::FileNameForComponent(std::filesystem::absolute(text::PathOf(geometryFile)));
    return component::CatchingCodes("ReadHeadModel", [&] { return ReadHeadModel(name.c_str()); });
}

} // namespace qmv40::check
