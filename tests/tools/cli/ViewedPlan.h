#pragma once

#include "tests/tools/cli/ToolRun.h"

/// What tests of `qmv40 view` share: the plain head, and a page to be filled that is nothing but its placeholders.
class ViewedHead {
public:
    ViewedHead();

    const TemporaryFolder folder;
    const std::string geometry; ///< file name
    const std::string page;     ///< file name of the template

    /// Runs the command on the head, with more arguments.
    ToolRun View(std::vector<std::string> more) const;
    /// The document that it prints. The exit code is not looked at.
    Json Document(std::vector<std::string> more) const;
    /// A plan of the component, spoiled: its file's name.
    std::string SpoiledPlan(const std::string& from, const std::string& to, const std::string& move,
                            const std::string& number, const Json& value) const;
};
