#pragma once

#include "tests/tools/cli/ToolRun.h"

/// Shared by the tests of `qmv40 view`: the geometry of the scenario "plain", and a page template that contains only
/// the placeholders.
class ViewedHead {
public:
    ViewedHead();

    const TemporaryFolder folder;
    const std::string geometry; ///< file name
    const std::string page;     ///< file name of the template

    /// Runs `qmv40 view` with this geometry and the arguments `more`.
    ToolRun View(std::vector<std::string> more) const;
    /// The same with --json: the document that it prints. The exit code is not tested.
    Json Document(std::vector<std::string> more) const;
    /// Writes a plan of the component in which one number of one move is replaced by `value`. Returns the file's name.
    std::string SpoiledPlan(const std::string& from, const std::string& to, const std::string& move,
                            const std::string& number, const Json& value) const;
};
