#pragma once

#include "tests/tools/cli/ToolRun.h"

/// Makes a plan with `qmv40 move --json`. Tests change its document and give it to `qmv40 check --plan`.
class CheckedPlanFile {
public:
    explicit CheckedPlanFile(std::string theFrom = "30,-45", std::string theTo = "45,90");

    const std::string& Geometry() const { return geometry; }
    /// The document as `qmv40 move` prints it, without any change.
    Json Plan() const;
    /// Runs `qmv40 check` on a document of plans, with the arguments `more`.
    ToolRun Check(const Json& document, std::vector<std::string> more = {}) const;
    /// The same with --json: the document that the check prints.
    Json Report(const Json& document, std::vector<std::string> more = {}) const;

private:
    TemporaryFolder folder;
    std::string geometry;
    std::string from;
    std::string to;
};

/// "3 arc-angle-off" for a finding in move 3, "the plan target-not-reached" for one of the plan as a whole.
std::vector<std::string> FindingNames(const Json& plan);
