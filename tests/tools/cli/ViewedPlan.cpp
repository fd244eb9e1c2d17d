#include "tests/tools/cli/ViewedPlan.h"

ViewedHead::ViewedHead()
    : geometry(PlainGeometryFile(folder)),
      page(folder.Write("page.html", "<title>@TITLE@</title>\n"
                                     "<script type=\"application/json\" id=\"document\">@DOCUMENT@</script>\n"
                                     "<div id=\"drawings\">@DRAWINGS@</div>\n")) {}

ToolRun ViewedHead::View(std::vector<std::string> more) const {
    more.insert(more.begin(), {"view", "--geometry", geometry});
    return RunQmv40(std::move(more));
}

Json ViewedHead::Document(std::vector<std::string> more) const {
    more.emplace_back("--json");
    return View(std::move(more)).Document();
}

std::string ViewedHead::SpoiledPlan(const std::string& from, const std::string& to, const std::string& move,
                                    const std::string& number, const Json& value) const {
    const Json plan = RunQmv40({"move", "--geometry", geometry, "--from", from, "--to", to, "--json"}).Document();
    const Json edited = Edited(plan, [&](Json& records) { records[move][number] = value; });
    return folder.Write(move + number + ".json", edited.dump());
}
