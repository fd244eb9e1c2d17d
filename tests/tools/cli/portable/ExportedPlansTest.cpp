// Programs exported for every reference head, executed by test code that shares only vectors and angles with the
// tool.

#include "tests/tools/cli/ExecutedProgram.h"
#include "tests/tools/cli/ReferenceHead.h"

#include <gtest/gtest.h>

namespace {

constexpr int planCount = 40; // of each head; `./test export` reads 100

/// A reference head in a folder of its own, and a tour of random plans.
class ExportedTour {
public:
    explicit ExportedTour(const Json& head) {
        const std::string settings =
            head["settings"].empty() ? "" : folder.Write("settings.reg", SettingsText(head["settings"]));
        common = {"--geometry", ReferenceGeometryFile(head, folder, settings), "--tour",
                  folder.Write("tour.csv", RandomTour(planCount))};
        if (!settings.empty()) common = With(common, {"--settings", settings});
    }

    Json Plans() const { return Run("move", {"--json"}).Document()["plans"]; }
    std::string Export(const std::vector<std::string>& more) const {
        // Some captures contain a mistake on purpose, so that their plans have findings.
        return Run("export", With(more, {"--force"})).out;
    }

private:
    ToolRun Run(const std::string& command, const std::vector<std::string>& more) const {
        ToolRun run = RunQmv40(With(With({command}, common), more));
        EXPECT_EQ(0, run.exitCode) << run.err;
        return run;
    }

    TemporaryFolder folder;
    std::vector<std::string> common;
};

TEST(ExportedPlans, FollowThePlansOfEveryReferenceHead) {
    const std::vector<Json> heads = LoadReferenceDocuments();
    ASSERT_GE(heads.size(), 12u);
    for (const Json& head : heads) {
        SCOPED_TRACE(head["name"].get<std::string>());
        const ExportedTour tour(head);
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
