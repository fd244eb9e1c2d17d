// Programs exported for every reference head, executed by test code that shares nothing with the tool.

#include "tests/tools/cli/ExecutedProgram.h"
#include "tests/tools/cli/ReferenceHead.h"

#include <gtest/gtest.h>
#include <random>

namespace {

constexpr unsigned tourSeed = 20261122;
constexpr int planCount = 100;

std::string RandomTour(std::mt19937_64& random) {
    constexpr int step = 15;
    std::uniform_int_distribution<int> a(0, 6);
    std::uniform_int_distribution<int> b(-12, 12);
    std::string text = "A,B\n";
    for (int i = 0; i <= planCount; ++i) {
        const int tilt = step * a(random);
        text += std::to_string(tilt) + "," + std::to_string(step * b(random)) + "\n";
    }
    return text;
}

/// A reference head in a folder of its own, and a tour of random plans.
class ExportedTour {
public:
    ExportedTour(const Json& head, std::mt19937_64& random) {
        const std::string settings =
            head["settings"].empty() ? "" : folder.Write("settings.reg", SettingsText(head["settings"]));
        common = {"--geometry", ReferenceGeometryFile(head, folder, settings), "--tour",
                  folder.Write("tour.csv", RandomTour(random))};
        if (!settings.empty()) common.insert(common.end(), {"--settings", settings});
    }

    Json Plans() const { return Run("move", {"--json"}).Document()["plans"]; }
    std::string Export(std::vector<std::string> more) const {
        more.emplace_back("--force"); // some captures contain a mistake on purpose, so that their plans have findings
        return Run("export", std::move(more)).out;
    }

private:
    ToolRun Run(const std::string& command, std::vector<std::string> more) const {
        more.insert(more.begin(), common.begin(), common.end());
        more.insert(more.begin(), command);
        ToolRun run = RunQmv40(std::move(more));
        EXPECT_EQ(0, run.exitCode) << run.err;
        return run;
    }

    TemporaryFolder folder;
    std::vector<std::string> common;
};

TEST(ExportedPlans, FollowThePlansOfEveryReferenceHead) {
    std::mt19937_64 random(tourSeed);
    const std::vector<Json> heads = LoadReferenceDocuments();
    ASSERT_GE(heads.size(), 12u);
    for (const Json& head : heads) {
        SCOPED_TRACE(head["name"].get<std::string>() + ", seed " + std::to_string(tourSeed));
        const ExportedTour tour(head, random);
        const Json plans = tour.Plans();
        ASSERT_EQ(std::size_t{planCount}, plans.size());
        EXPECT_EQ("",
                  DifferenceFromPlans(ReadPoints(tour.Export({"--format", "points", "--chord", "0.02"})), plans, 0.02));
        EXPECT_EQ("", DifferenceFromPlans(ReadGcode(tour.Export({"--format", "gcode"})), plans, 0.01));
        EXPECT_EQ("",
                  DifferenceFromPlans(ReadGcode(tour.Export({"--format", "gcode", "--arcs", "chords"})), plans, 0.01));
    }
}

} // namespace
