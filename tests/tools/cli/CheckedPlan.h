#pragma once

#include "tests/tools/cli/ToolRun.h"

/// A plan on its way from `qmv40 move --json`, perhaps spoiled, into `qmv40 check --plan`.
class CheckedPlanFile {
public:
    explicit CheckedPlanFile(std::string theFrom = "30,-45", std::string theTo = "45,90");

    const std::string& Geometry() const { return geometry; }
    /// The document of the clean plan.
    Json Plan() const;
    /// Runs the check on a document, with more arguments.
    ToolRun Check(const Json& document, std::vector<std::string> more = {}) const;
    /// The same as a report.
    Json Report(const Json& document, std::vector<std::string> more = {}) const;

private:
    TemporaryFolder folder;
    std::string geometry;
    std::string from;
    std::string to;
};

/// "3 arc-angle-off" for a finding in move 3, "the plan target-not-reached" for one of the plan as a whole.
std::vector<std::string> FindingNames(const Json& plan);
