#pragma once

#include "tests/tools/cli/ToolRun.h"

/// Shared by the tests of `qmv40 view`: the geometry of the scenario "plain", and a page template that contains only
/// the placeholders.
class ViewedHead : public PlainHead {
public:
    /// Runs `qmv40 view` with this geometry and the arguments `more`.
    ToolRun View(const std::vector<std::string>& more) const { return RunTool("view", more); }
    /// The same with --json: the document that it prints. The exit code is not tested.
    Json Document(const std::vector<std::string>& more) const { return PlainHead::Document("view", more); }
    /// Writes a plan of the component in which one number of one move is replaced by `value`. Returns the file's name.
    std::string SpoiledPlan(const std::string& from, const std::string& to, const std::string& move,
                            const std::string& number, const Json& value) const;

    const std::string page = folder.Write("page.html", "<title>@TITLE@</title>\n"
                                                       "<script type=\"application/json\" "
                                                       "id=\"document\">@DOCUMENT@</script>\n"
                                                       "<div id=\"drawings\">@DRAWINGS@</div>\n"); ///< the template
};
