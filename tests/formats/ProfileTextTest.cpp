#include "formats/ProfileText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace qmv40;

namespace {

using Kind = ProfileLine::Kind;

constexpr std::string_view text{"first=0\r\n"
                                "\r\n"
                                "[HEADCENTRE]\n"
                                " X = 1.5 \n"
                                "; X=2\n"
                                "X=3\r"
                                "Y\n"
                                "y=4\n"
                                "[Other] note\n"
                                "X=\"5\"\n"
                                "[headcentre]\n"
                                "Z=6\n"
                                "[]\n"
                                "Z=7"};

TEST(ProfileLines, HaveNumbersNamesAndValues) {
    const struct {
        Kind kind;
        std::string_view section, key, value;
        bool isHidden;
        const char* why;
    } expected[] = {
        {Kind::Entry, "", "first", "0", false, "before any section"},
        {Kind::Blank, "", "", "", false, "a blank line"},
        {Kind::Section, "HEADCENTRE", "", "", false, "a section"},
        {Kind::Entry, "HEADCENTRE", "X", "1.5", false, "blanks do not count"},
        {Kind::Comment, "HEADCENTRE", "", "", false, "a comment line"},
        {Kind::Entry, "HEADCENTRE", "X", "3", true, "the first one counts"},
        {Kind::NoValue, "HEADCENTRE", "Y", "", false, "no equals sign"},
        {Kind::Entry, "HEADCENTRE", "y", "4", true, "letter case does not matter, and the first line counts"},
        {Kind::Section, "Other", "", "", false, "anything may follow the name"},
        {Kind::Entry, "Other", "X", "\"5\"", false, "of another section"},
        {Kind::Section, "headcentre", "", "", true, "the first of two sections counts"},
        {Kind::Entry, "headcentre", "Z", "6", true, "an entry of the second one is hidden"},
        {Kind::Section, "", "", "", true, "no section is found without a name"},
        {Kind::Entry, "", "Z", "7", true, "an entry of a section without a name"},
    };
    const std::vector<ProfileLine> lines = ProfileLines(text);
    ASSERT_EQ(lines.size(), std::size(expected));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto& [kind, section, key, value, isHidden, why] = expected[i];
        SCOPED_TRACE(why);
        EXPECT_EQ(lines[i].kind, kind);
        EXPECT_EQ(lines[i].number, i + 1);
        EXPECT_EQ(lines[i].section, section);
        EXPECT_EQ(lines[i].key, key);
        EXPECT_EQ(lines[i].value, value);
        EXPECT_EQ(lines[i].isHidden, isHidden);
    }
}

// The list of all lines and the query for one value must agree.
TEST(ProfileLines, AgreeWithTheQueryForOneValue) {
    for (const ProfileLine& line : ProfileLines(text)) {
        if (line.kind != Kind::Entry || line.isHidden) continue;
        EXPECT_EQ(FindProfileValue(text, line.section, line.key), line.value) << line.number;
    }
    EXPECT_EQ(FindProfileValue(text, "HEADCENTRE", "Z"), std::nullopt);
    EXPECT_EQ(FindProfileValue(text, "HEADCENTRE", "Y"), std::nullopt);
}

} // namespace
