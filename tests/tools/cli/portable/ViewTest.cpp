// File names that Windows does not allow.

#include "tests/tools/cli/ViewedPlan.h"
#include "tests/tools/view/SvgDocument.h"

#include <gtest/gtest.h>

namespace {

TEST(View, EscapesFileNames) {
    const ViewedHead head;
    const struct {
        const char* name;
        const char* shown; ///< in the markup
        const char* why;
    } cases[] = {{"a<b>&\".ini", "a&lt;b&gt;&amp;&quot;.ini", "markup"},
                 {"<!--<script>.ini", "&lt;!--&lt;script&gt;.ini",
                  "a text after which a script element does not end at its end tag"},
                 {"@DRAWINGS@.ini", "@DRAWINGS@.ini", "a placeholder"},
                 {"a\x01.ini", "a\xEF\xBF\xBD.ini", "a character that XML does not allow"}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.why);
        const std::string geometry = head.folder.Write(each.name, ReadFile(head.geometry));
        const std::string file = head.folder.Name("page.out.html");
        const ToolRun run = RunQmv40({"view", "--geometry", geometry, "--from", "0,0", "--to", "0,0", "--template",
                                      head.page, "--output", file, "--svg", head.folder.Name("plan.svg")});
        ASSERT_EQ(0, run.exitCode) << run.err;
        const std::string page = ReadFile(file);
        const std::string shown = std::string(each.shown) + ": (0, 0) to (0, 0)";
        EXPECT_NE(std::string::npos, page.find("<title>" + shown + "</title>\n<script"));
        const std::size_t begin = page.find("id=\"document\">") + std::string("id=\"document\">").size();
        const Json document = Json::parse(page.substr(begin, page.find("</script>") - begin));
        EXPECT_EQ(1u, document["plans"].size());
        EXPECT_EQ(page.find("<script"), page.rfind("<script")) << "more than one script element";
        EXPECT_EQ("svg", ParseSvg(ReadFile(head.folder.Name("plan.svg"))).name);
    }
}

} // namespace
