#include "tests/tools/cli/ToolRun.h"

#include "tools/text/Numbers.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

using namespace qmv40;

std::string PositionArgument(const Json& point) {
    return text::ExactText(point["X"].get<double>()) + "," + text::ExactText(point["Y"].get<double>()) + "," +
           text::ExactText(point["Z"].get<double>());
}

class RecoverCommand : public testing::Test, protected PlainHead {
protected:
    ToolRun Recover(const std::string& standing, const std::vector<std::string>& more = {},
                    const std::string& command = "recover") const {
        return RunTool(command, With({"--from", "30,45", "--to", "75,-120", "--standing", standing}, more));
    }
    /// Both ways on the page of `qmv40 view`.
    ToolRun View(const std::string& standing, const std::vector<std::string>& more) const {
        return Recover(standing, With({"--recover"}, more), "view");
    }
    /// The machine position at the end of a move of the plan, as an argument.
    std::string EndOf(std::size_t number) const { return PositionArgument(moves[number - 1]["end"]); }
    std::string JournalWith(const std::string& content) const { return folder.Write("journal.txt", content); }

    const Json moves = PlansThrough({"30,45", "75,-120"})[0]["moves"];
};

TEST_F(RecoverCommand, OnThePageIsRefusedWithATour) {
    const std::string tour = folder.Write("tour.csv", "A,B\n0,0\n15,30\n");
    const ToolRun run = RunTool("view", {"--recover", "--standing", EndOf(9), "--tour", tour, "--to", "75,-120"});
    EXPECT_EQ(2, run.exitCode);
    EXPECT_NE(std::string::npos, run.err.find("excludes")) << run.err;
}

TEST_F(RecoverCommand, PrintsStateAnglesAndBothWaysFromTheStop) {
    const ToolRun run = Recover(EndOf(9), {"--after", "9", "--json"});
    EXPECT_EQ(0, run.exitCode) << run.err;
    const Json document = run.Document();
    std::vector<std::string> members;
    for (const auto& member : document.items()) members.push_back(member.key());
    const std::vector<std::string> expected{"format", "version", "state",   "stoppedIn", "A",
                                            "B",      "finish",  "backOut", "why"};
    EXPECT_EQ(expected, members);
    EXPECT_EQ("qmv40/recover", document["format"]);
    EXPECT_EQ("on-peg", document["state"]);
    EXPECT_EQ(Json({10}), document["stoppedIn"]);
    EXPECT_NEAR(0.0, document["A"].get<double>(), 1e-6);
    EXPECT_NEAR(45.0, document["B"].get<double>(), 1e-6);
    const Json home = PlansThrough({"30,45", "30,45"})[0]["moves"];
    for (const auto& [name, end] : {std::pair{"finish", moves[18]["end"]}, std::pair{"backOut", home[18]["end"]}}) {
        const Json& way = document[name];
        EXPECT_EQ("", DifferenceBetween(moves[8]["end"], way[0]["start"], 0.0)) << name;
        for (std::size_t i = 1; i < way.size(); ++i)
            EXPECT_EQ(way[i - 1]["end"].dump(), way[i]["start"].dump()) << name;
        EXPECT_EQ("", DifferenceBetween(end, way.back()["end"], 1e-9)) << name;
    }
}

TEST_F(RecoverCommand, SaysWhatToInspectWhenTwoStatesFit) {
    const ToolRun run = Recover(EndOf(8), {"--json"});
    EXPECT_EQ(4, run.exitCode);
    const Json document = run.Document();
    EXPECT_EQ("unknown", document["state"]);
    EXPECT_EQ(Json({8, 9}), document["stoppedIn"]);
    EXPECT_TRUE(document["A"].is_null() && document["B"].is_null());
    EXPECT_FALSE(document.contains("finish") || document.contains("backOut"));
    const std::string why = document["why"];
    EXPECT_NE(std::string::npos, why.find("Unlocked (move 8): the lever is unlocked, the cup is off the peg")) << why;
    EXPECT_NE(std::string::npos, why.find("On-peg (move 9): the lever is unlocked and the cup sits on the peg")) << why;
}

TEST_F(RecoverCommand, ReadsTheMoveFromAJournal) {
    const std::string line = "before 12 from 30,45 to 75,-120;\n";
    const ToolRun complete = Recover(EndOf(11), {"--json", "--journal", JournalWith(line)});
    EXPECT_EQ("indexed", complete.Document()["state"]);
    const ToolRun torn = Recover(EndOf(12), {"--json", "--journal", JournalWith(line + "after 12 fr")});
    EXPECT_EQ(Json({13}), torn.Document()["stoppedIn"]) << "the torn line says that move 12 had ended";
    EXPECT_NE(std::string::npos, torn.err.find("the last line is torn")) << torn.err;
    const ToolRun jogged = Recover(EndOf(14), {"--json", "--journal", JournalWith(line)});
    EXPECT_EQ("unknown", jogged.Document()["state"]);
    EXPECT_NE(std::string::npos, jogged.Document()["why"].get<std::string>().find("mm off"));
}

TEST_F(RecoverCommand, RefusesAJournalOfAnotherPlan) {
    const std::string name = JournalWith("before 12 from 30,45 to 75,120;\n");
    const ToolRun run = Recover(EndOf(11), {"--json", "--journal", name});
    EXPECT_EQ(3, run.exitCode);
    EXPECT_EQ(name, run.Document()["error"]["file"]);
    EXPECT_EQ(1, run.Document()["error"]["line"]);
}

TEST_F(RecoverCommand, RefusesWrongMovesAndPositions) {
    const struct {
        std::vector<std::string> more;
        const char* why;
    } cases[] = {{{"--during", "0"}, "moves count from 1"},
                 {{"--during", "20"}, "there are 19"},
                 {{"--after", "1.5"}, "moves are whole numbers"},
                 {{"--during", "3", "--after", "2"}, "--during and --after give two moves"},
                 {{"--during", "3", "--journal", "run.txt"}, "the move comes from --during or from a journal"},
                 {{"--position-error", "0"}, "no position is exact"},
                 {{"--to", "0,0"}, "two targets"}};
    for (const auto& each : cases) EXPECT_EQ(2, Recover("0,0,0", each.more).exitCode) << each.why;
    for (const char* standing : {"1,2", "1,2,3,4", "1,2,x", ""}) EXPECT_EQ(2, Recover(standing).exitCode) << standing;
}

TEST_F(RecoverCommand, PrintsTheStateFirstInLinesOf100Letters) {
    for (const std::size_t number : {1u, 3u, 8u, 10u, 16u, 18u, 19u}) {
        const ToolRun run = Recover(EndOf(number));
        EXPECT_TRUE(run.out.starts_with("State: ")) << run.out;
        EXPECT_TRUE(IsWithin100Columns(run.out)) << run.out;
    }
    const std::string text = Recover(EndOf(10), {"--after", "10"}).out;
    for (const char* expected :
         {"State: on-peg\n", "\nFinish, locked at A 75, B -120 (deg)\n", "\nBack out, locked at A 30, B 45 (deg)\n",
          "SetCurrentHeadPosition(75, -120)", "SetCurrentHeadPosition(30, 45)"}) {
        EXPECT_NE(std::string::npos, text.find(expected)) << expected << "\nin:\n" << text;
    }
}

TEST_F(RecoverCommand, GivesBothWaysToThePageOfView) {
    const ToolRun run = View(EndOf(16), {"--after", "16", "--json"});
    EXPECT_EQ(0, run.exitCode) << run.err;
    EXPECT_TRUE(run.err.starts_with("State: indexed. ")) << run.err;
    const Json document = run.Document();
    EXPECT_EQ("plain.ini: stopped, indexed. 1 finish, 2 back out", document["title"]);
    ASSERT_EQ(2u, document["plans"].size());
    const Json recovered = Recover(EndOf(16), {"--after", "16", "--json"}).Document();
    EXPECT_EQ(recovered["finish"].size(), document["plans"][0]["moves"].size());
    EXPECT_EQ(recovered["backOut"].size(), document["plans"][1]["moves"].size());
    EXPECT_EQ(2, View(EndOf(16), {"--after", "16", "--plan"}).exitCode);
    EXPECT_EQ(2, Recover("1,2,3", {}, "view").exitCode) << "--standing needs --recover";
}

TEST_F(RecoverCommand, GivesThePageClearancesToStylusAndTable) {
    const Json document = View(EndOf(16), {"--after", "16", "--json", "--stylus", "100", "--table", "-900"}).Document();
    for (const Json& plan : document["plans"]) {
        EXPECT_EQ("stylus", plan["moves"].back()["nearest"]["part"].get<std::string>().substr(0, 6));
    }
}

TEST_F(RecoverCommand, IsNotShownAsClearWhenTheStateIsUnknown) {
    const ToolRun run = View("1,2,3", {"--json"});
    EXPECT_EQ(4, run.exitCode);
    const Json document = run.Document();
    EXPECT_FALSE(document["verdict"]["clear"].get<bool>());
    EXPECT_EQ("stop-unknown", document["plans"][0]["findings"][0]["name"]);
    EXPECT_EQ("plain.ini: stopped, state unknown. Shown is the plan", document["title"]);
}

} // namespace
