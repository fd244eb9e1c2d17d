#include "tools/text/Finding.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace qmv40;

namespace {

text::Finding Example() {
    return {.name = "touches-lever",
            .severity = text::Severity::Warning,
            .sentence = "The path comes closer to a lever than allowed.",
            .remedy = "Give the lever its true radius.",
            .place = "plan 2, move 3 UnLock",
            .amount = "0.5000 mm",
            .details = {{"move", 3}}};
}

TEST(Finding, HasTheSharedMembersFirstInADocument) {
    EXPECT_EQ(R"({"name":"touches-lever","severity":"warning",)"
              R"("sentence":"The path comes closer to a lever than allowed.",)"
              R"("remedy":"Give the lever its true radius.","move":3})",
              text::FindingJson(Example()).Dump());
}

TEST(Finding, IsPrintedWithPlaceAndAmountIfPresent) {
    const auto printed = [](const text::Finding& finding) {
        std::ostringstream out;
        text::PrintFinding(finding, out);
        return out.str();
    };
    EXPECT_EQ("  plan 2, move 3 UnLock: warning: touches-lever by 0.5000 mm\n"
              "    The path comes closer to a lever than allowed.\n"
              "    -> Give the lever its true radius.\n",
              printed(Example()));
    EXPECT_EQ("  fault: sets-exchanged\n    One.\n    -> Two.\n",
              printed({"sets-exchanged", text::Severity::Fault, "One.", "Two.", "", ""}));
}

TEST(Wrapped, BreaksAtBlanksWithin100Columns) {
    const std::string word(30, 'x');
    const std::string three = word + " " + word + " " + word;
    EXPECT_EQ("  - " + three + "\n    " + word + "\n", text::Wrapped("  - ", three + " " + word));
    EXPECT_EQ("- " + std::string(120, 'y') + "\n", text::Wrapped("- ", std::string(120, 'y')))
        << "no blank to break at";
    EXPECT_EQ("-> \n", text::Wrapped("-> ", "")) << "an empty text";
}

} // namespace
