#include "tests/tools/cli/CheckedPlan.h"

#include <gtest/gtest.h>

CheckedPlanFile::CheckedPlanFile(std::string theFrom, std::string theTo)
    : geometry(PlainGeometryFile(folder)), from(std::move(theFrom)), to(std::move(theTo)) {}

Json CheckedPlanFile::Plan() const {
    const ToolRun run = RunQmv40({"move", "--geometry", geometry, "--from", from, "--to", to, "--json"});
    EXPECT_EQ(0, run.exitCode) << run.out << run.err;
    return run.Document();
}

ToolRun CheckedPlanFile::Check(const Json& document, std::vector<std::string> more) const {
    std::vector<std::string> arguments{"check", "--geometry", geometry, "--plan",
                                       folder.Write("plan.json", document.dump())};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunQmv40(std::move(arguments));
}

Json CheckedPlanFile::Report(const Json& document, std::vector<std::string> more) const {
    more.emplace_back("--json");
    return Check(document, std::move(more)).Document();
}

std::vector<std::string> FindingNames(const Json& plan) {
    std::vector<std::string> names;
    for (const Json& finding : plan["findings"]) {
        const std::string where = finding["move"].is_null() ? "the plan" : std::to_string(finding["move"].get<int>());
        names.push_back(where + " " + finding["name"].get<std::string>());
    }
    return names;
}
