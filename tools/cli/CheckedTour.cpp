#include "cli/CheckedTour.h"

#include "check/HeadFile.h"
#include "cli/Calculator.h"
#include "cli/ComponentError.h"
#include "cli/Platform.h"
#include "cli/Text.h"

std::size_t CheckedTour::Findings() const {
    std::size_t findings = 0;
    for (const CheckedPlan& checked : plans) findings += checked.report.findings.size();
    return findings;
}

CheckedTour CheckTour(std::vector<check::PlanToCheck> plans, const check::HeadModel& head,
                      const check::CheckOptions& options) {
    CheckedTour tour;
    for (check::PlanToCheck& plan : plans) {
        check::PlanReport report = tour.plans.empty()
                                       ? check::CheckPlan(head, options, plan)
                                       : check::CheckNextPlan(head, options, plan, tour.plans.back().report);
        tour.figures.Take(plan, report);
        tour.plans.push_back({std::move(plan), std::move(report)});
    }
    return tour;
}

check::HeadModel LoadModel(const std::string& geometryFile) {
    Calculator().LoadHeadGeometry(geometryFile);
    const std::wstring name = FileNameForComponent(std::filesystem::absolute(PathOf(geometryFile)));
    return CatchingCodes("ReadHeadModel", [&] { return check::ReadHeadModel(name.c_str()); });
}
