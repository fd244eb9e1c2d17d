#include "tests/tools/cli/ToolRun.h"

#include <gtest/gtest.h>

namespace {

/// The CSV row of the move Lock, planned with more arguments.
std::string LockRow(const TemporaryFolder& folder, const std::vector<std::string>& settings) {
    std::vector<std::string> move{"move",  "--geometry", PlainGeometryFile(folder), "--from", "0,0", "--to",
                                  "45,90", "--csv"};
    move.insert(move.end(), settings.begin(), settings.end());
    const ToolRun run = RunQmv40(move);
    EXPECT_EQ(0, run.exitCode) << run.err;
    const std::size_t lock = run.out.find(",Lock,");
    return run.out.substr(lock, run.out.find('\n', lock) - lock);
}

TEST(Settings, OfAFileCountForOneRunOnly) {
    const TemporaryFolder folder;
    const std::string file = folder.Write(
        "settings.reg", "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Software\\Hollbeck\\VRX Software\\QMV40Calculator]\n"
                        "\"UnLocked To locked Lever Rotation\"=\"131.5\"\n");
    const std::string before = LockRow(folder, {});
    EXPECT_NE(before.find(",-138,"), std::string::npos) << before;
    const std::string during = LockRow(folder, {"--settings", file});
    EXPECT_NE(during.find(",-131.5,"), std::string::npos) << during;
    EXPECT_EQ(before, LockRow(folder, {}));
}

TEST(Settings, FileThatIsMissingIsReported) {
    const TemporaryFolder folder;
    const std::string name = folder.Name("missing.reg");
    const ToolRun run = RunQmv40({"pole", "--geometry", PlainGeometryFile(folder), "--settings", name});
    EXPECT_EQ(3, run.exitCode);
    EXPECT_EQ(name + ": no such settings file\n", run.err);
}

} // namespace
