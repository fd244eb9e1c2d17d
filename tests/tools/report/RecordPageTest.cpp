#include "tools/report/RecordPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace qmv40;

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* hostile = R"(<script>alert("&'")</script>)";
constexpr const char* harmless = "&lt;script&gt;alert(&quot;&amp;&#39;&quot;)&lt;/script&gt;";

TEST(RecordPage, EscapesEveryTextThatAPersonMayHaveGiven) {
    const text::Finding finding{hostile, text::Severity::Fault, hostile, hostile, "", "", {}};
    const report::Record record{hostile,   "fault",  hostile,
                                {finding}, "<svg/>", {{hostile, {hostile}, {{hostile, hostile}}}}};
    const std::string page = report::RecordPage(record);
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    std::size_t count = 0;
    for (std::size_t at = page.find(harmless); at != std::string::npos; at = page.find(harmless, at + 1)) ++count;
    // Nine texts; the title stands twice, as the heading and as the title of the window.
    EXPECT_EQ(10u, count) << page;
}

TEST(RecordPage, NeedsNoOtherFile) {
    const std::string page = report::RecordPage({"Head 1", "good", "", {}, "<svg/>", {}});
    for (const char* const reference : {"src=", "href=", "url(", "@import", "http"}) {
        EXPECT_THAT(page, Not(HasSubstr(reference)));
    }
    EXPECT_THAT(page, HasSubstr("<figure><svg/></figure>"));
}

TEST(RecordPage, IsKnownByItsFirstLine) {
    const std::string page = report::RecordPage({"Head 1", "good", "", {}, "", {}});
    EXPECT_TRUE(report::RecordKind().isContentOf(page));
    EXPECT_FALSE(report::RecordKind().isContentOf("<!DOCTYPE html>\n<html></html>"));
}

} // namespace
