#include "tests/tools/cli/ToolRun.h"

#include <gtest/gtest.h>

namespace {

TEST(Settings, FileIsRefusedBecauseTheRegistryHoldsThem) {
    const TemporaryFolder folder;
    const std::string geometry = PlainGeometryFile(folder);
    const std::string settings = folder.Write("settings.reg", "REGEDIT4\n");
    const ToolRun run = RunQmv40({"pole", "--geometry", geometry, "--settings", settings});
    EXPECT_EQ(2, run.exitCode);
    EXPECT_EQ("", run.out);
    EXPECT_NE(std::string::npos, run.err.find("registry")) << run.err;
}

} // namespace
