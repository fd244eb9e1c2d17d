#include "tests/tools/cli/CheckedPlan.h"

ToolRun CheckedPlanFile::Check(const Json& document, const std::vector<std::string>& more) const {
    return RunTool("check", With({"--plan", folder.Write("plan.json", document.dump())}, more));
}

Json CheckedPlanFile::Report(const Json& document, const std::vector<std::string>& more) const {
    return Check(document, With(more, {"--json"})).Document();
}

std::vector<std::string> FindingNames(const Json& plan) {
    std::vector<std::string> names;
    for (const Json& finding : plan["findings"]) {
        const std::string where = finding["move"].is_null() ? "the plan" : std::to_string(finding["move"].get<int>());
        names.push_back(where + " " + finding["name"].get<std::string>());
    }
    return names;
}
