#include "tools/recovery/Journal.h"
#include "tests/support/SourceFolders.h"

#include "MoveJournal.h"
#include "support/TemporaryFolder.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

namespace {

using namespace qmv40;
using recovery::KnownMove;

constexpr model::HeadAngles from{0.0, -180.0};
constexpr model::HeadAngles to{45.0, 180.0};
const std::string plan = " from 0,-180 to 45,180;\n";

class JournalFile : public testing::Test {
protected:
    recovery::Journal Read(const std::string& content) const {
        std::ofstream(name, std::ios::binary) << content;
        return recovery::ReadJournal(name, from, to);
    }
    std::string Refusal(const std::string& content) const {
        try {
            Read(content);
        } catch (const text::InputError& error) {
            return std::to_string(error.line.value_or(0)) + ": " + error.reason;
        }
        return "accepted";
    }

    const TemporaryFolder folder;
    const std::string name = folder.Name("journal.txt");
};

std::string Line(const char* when, std::size_t number) {
    return std::string(when) + " " + std::to_string(number) + plan;
}

std::string JournalOfAllMoves() {
    std::string content;
    for (std::size_t number = 1; number <= 19; ++number) content += Line("before", number) + Line("after", number);
    return content;
}

TEST_F(JournalFile, SaysWhichMoveHadBegunOrEnded) {
    const struct {
        std::string content;
        KnownMove::Kind kind;
        std::size_t number;
        const char* why;
    } cases[] = {
        {"", KnownMove::Kind::Nothing, 0, "an empty file"},
        {Line("before", 1), KnownMove::Kind::During, 1, "the first line"},
        {Line("before", 1) + Line("after", 1), KnownMove::Kind::After, 1, "the first move has ended"},
        {JournalOfAllMoves(), KnownMove::Kind::After, 19, "a whole plan"},
        {"before 3 from 0,-180.0 to 45,+180;\r\n", KnownMove::Kind::During, 3,
         "line ends of Windows, and numbers in other forms"},
        {"before 1 from 15,0 to 0,-180;\nafter 1 from 15,0 to 0,-180;\n" + Line("before", 1), KnownMove::Kind::During,
         1, "after the lines of another plan"},
        {Line("before", 9) + Line("before", 9), KnownMove::Kind::During, 9, "a way out continues the move"},
        {Line("before", 14) + Line("after", 14) + Line("before", 6), KnownMove::Kind::During, 6,
         "a way out goes back to move 6"},
    };
    for (const auto& each : cases) {
        const recovery::Journal journal = Read(each.content);
        EXPECT_EQ(each.kind, journal.known.kind) << each.why;
        EXPECT_EQ(each.number, journal.known.number) << each.why;
        EXPECT_FALSE(journal.isTorn) << each.why;
    }
}

TEST_F(JournalFile, CountsUpToItsLastCompleteLine) {
    const std::string journalText = JournalOfAllMoves();
    std::size_t completeLines = 0;
    for (std::size_t length = 0; length <= journalText.size(); ++length) {
        if (length > 0 && journalText[length - 1] == '\n') ++completeLines;
        const recovery::Journal journal = Read(journalText.substr(0, length));
        const bool isTorn = length > 0 && journalText[length - 1] != '\n';
        EXPECT_EQ(isTorn, journal.isTorn) << length;
        const bool isBegun = completeLines % 2 == 1;
        EXPECT_EQ((completeLines + 1) / 2, journal.known.number) << length;
        if (completeLines == 0) {
            EXPECT_EQ(KnownMove::Kind::Nothing, journal.known.kind) << length;
        } else {
            EXPECT_EQ(isBegun ? KnownMove::Kind::During : KnownMove::Kind::After, journal.known.kind) << length;
        }
        EXPECT_EQ(isBegun && isTorn, journal.known.isEndAnnounced) << length;
    }
}

TEST_F(JournalFile, IsTornWhenItsEndIsZeroBytes) {
    const recovery::Journal journal = Read(Line("before", 7) + std::string(40, '\0'));
    EXPECT_TRUE(journal.isTorn);
    EXPECT_EQ(7u, journal.known.number);
}

TEST_F(JournalFile, IsRefusedWithTheLineThatDoesNotFit) {
    const struct {
        std::string content;
        const char* refusal;
        const char* why;
    } cases[] = {
        {"before 9 from 0,-180 to 45,-180;\n", "1: belongs to the plan from A 0, B -180 to A 45, B -180",
         "B -180 is not 180"},
        {"before 9 from 0,0 to 45,180;\n", "1: belongs to the plan", "another start"},
        {Line("before", 20) + Line("before", 1), "1: is not a line of a journal", "there are 19 moves"},
        {Line("before", 20), "1: is not a line of a journal",
         "the last line is refused as well, because it is complete"},
        {"before 1" + plan + "x\n" + Line("after", 1), "2: is not a line", "a stray line before the end"},
        {"during 1" + plan + "\n", "1: is not a line", "an unknown word"},
        {Line("before", 1) + Line("after", 2), "2: move 2 ends here", "the end of a move that did not begin"},
        {Line("after", 2), "1: move 2 ends here", "the end of a move in the first line"},
        {Line("before", 1) + Line("after", 1) + Line("before", 3), "3: move 3 begins here", "move 2 is missing"},
        {Line("before", 1) + Line("before", 2), "2: move 2 begins here", "the end of move 1 is missing"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(each.refusal, Refusal(each.content).substr(0, std::string(each.refusal).size())) << each.why;
}

// The code that docs/recovery.md shows

const std::string sources = SourceRoot();

TEST_F(JournalFile, IsWrittenByTheCodeInTheDocument) {
    {
        MoveJournal journal{{std::fopen(name.c_str(), "w"), std::fclose}, "from 0,-180 to 45,180"};
        EXPECT_TRUE(journal.Write("before", 1));
        EXPECT_TRUE(journal.Write("after", 1));
        EXPECT_TRUE(journal.Write("before", 2));
        EXPECT_EQ(2u, recovery::ReadJournal(name, from, to).known.number)
            << "the lines are in the file while it is open";
    }
    EXPECT_FALSE((MoveJournal{{nullptr, std::fclose}, ""}.Write("before", 1))) << "no file";
    const std::string command = "cd " + sources + "/tests/tools/recovery && PYTHONDONTWRITEBYTECODE=1 python3 -c '" +
                                "from move_journal import MoveJournal\n" + "j = MoveJournal(\"" + name +
                                "\", (0, -180), (45, 180))\n" + "j.write(\"before\", 1)\nj.write(\"after\", 1)'";
    ASSERT_EQ(0, std::system(command.c_str()));
    const recovery::Journal journal = recovery::ReadJournal(name, from, to);
    EXPECT_EQ(KnownMove::Kind::After, journal.known.kind);
    EXPECT_EQ(1u, journal.known.number);
}

TEST(JournalDocument, ContainsTheTestedCode) {
    const std::string page = text::ReadWholeFile(sources + "/docs/recovery.md");
    const std::string header = text::ReadWholeFile(sources + "/tests/tools/recovery/MoveJournal.h");
    EXPECT_NE(std::string::npos, page.find(header.substr(header.find("#include"))));
    EXPECT_NE(std::string::npos, page.find(text::ReadWholeFile(sources + "/tests/tools/recovery/move_journal.py")));
}

} // namespace
