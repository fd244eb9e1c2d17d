// LinuxCNC's interpreter has read exported G-code programs; `./test export --store` runs it and stores the moves that
// it made of them ("canonical moves"). These tests compare them with the plans.

#include "tests/support/SourceFolders.h"
#include "tests/tools/cli/ExecutedProgram.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

std::filesystem::path ExportsFolder() {
    const char* const folder = std::getenv("QMV40_EXPORTS");
    return folder == nullptr ? std::filesystem::path(TestDataFolder() + "/export") : std::filesystem::path(folder);
}

/// The program without its heading, which names the geometry file.
std::string WithoutHeading(const std::string& program) { return program.substr(program.find("\nG21 ")); }

TEST(CanonicalMoves, EndWhereThePlansEnd) {
    int programs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ExportsFolder())) {
        if (entry.path().extension() != ".canon") continue;
        std::filesystem::path plans = entry.path();
        const Json document = Json::parse(ReadFile(plans.replace_extension(".json").string()));
        const Program program = ReadCanonicalMoves(ReadFile(entry.path().string()));
        EXPECT_EQ("", DifferenceFromPlans(program, document["plans"], 0.01)) << entry.path();
        ++programs;
    }
    EXPECT_GE(programs, 2);
}

TEST(CanonicalMoves, WereMadeOfTheProgramThatTheToolWrites) {
    for (const std::string name : {"plain", "turned-30"}) {
        const TemporaryFolder folder;
        const std::string geometry = folder.Name("head.ini");
        ASSERT_EQ(0, RunQmv40(LoadScenario(name).GeometryArguments({"--output", geometry})).exitCode);
        const std::string tour = folder.Write("tour.csv", "A,B\n0,0\n45,90\n90,-180\n90,180\n15,-30\n");
        const ToolRun run = RunQmv40({"export", "--geometry", geometry, "--tour", tour, "--format", "gcode"});
        const std::string stored = ReadFile((ExportsFolder() / (name + ".ngc")).string());
        EXPECT_TRUE(WithoutHeading(stored) == WithoutHeading(run.out))
            << name << ": the program has changed; run ./test export --store";
    }
}

} // namespace
