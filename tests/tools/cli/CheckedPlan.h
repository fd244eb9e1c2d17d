#pragma once

#include "tests/tools/cli/ToolRun.h"

/// Makes a plan with `qmv40 move --json`. Tests change its document and give it to `qmv40 check --plan`.
class CheckedPlanFile : public PlainHead {
public:
    /// The document as `qmv40 move` prints it, without any change.
    Json Plan() const { return Document("move", {"--from", "30,-45", "--to", "45,90"}); }
    /// Runs `qmv40 check` on a document of plans, with the arguments `more`.
    ToolRun Check(const Json& document, const std::vector<std::string>& more = {}) const;
    /// The same with --json: the document that the check prints.
    Json Report(const Json& document, const std::vector<std::string>& more = {}) const;
};

/// "3 arc-angle-off" for a finding in move 3, "the plan target-not-reached" for one of the plan as a whole.
std::vector<std::string> FindingNames(const Json& plan);
