#include "tools/manual/Manual.h"

#include "tests/tools/cli/ToolRun.h"

#include <array>
#include <cstdio>
#include <gtest/gtest.h>

using namespace qmv40;

namespace {

struct ShellRun {
    int exitCode;
    std::string out;
};

ShellRun RunShell(const std::string& command) {
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    std::string out;
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe) != nullptr) out += buffer.data();
    return {pclose(pipe), out};
}

bool HasProgram(const std::string& name) { return RunShell("command -v " + name).exitCode == 0; }

TEST(BashCompletion, OffersTheWordsThatFit) {
    const struct {
        const char* typed; ///< the words after qmv40; the last one is incomplete
        const char* offered;
        const char* why;
    } cases[] = {
        {"m", "move", "a command"},
        {"settings ''", "show validate write -h --help", "the subcommands"},
        {"fit --shape ''", "circle plane line", "the only values of an option"},
        {"move --geo", "--geometry", "an option"},
        {"move --geometry hea", "head one.ini", "a file name with a blank"},
        {"move --from ''", "", "nothing for angles"},
        {"settings write --set locki", "locking-rotation=", "the name of a dimension"},
        {"settings validate hea", "head one.ini", "a file as argument"},
        {"settings validate --j", "--json", "an option instead of the file"},
        {"move --settings pole --js", "--json", "a file with the name of a command"},
        {"no-command --j", "", "nothing for an unknown command"},
    };
    const TemporaryFolder folder;
    folder.Write("qmv40.bash", manual::BashCompletion(manual::DescribeTool()));
    folder.Write("head one.ini", "");
    for (const auto& each : cases) {
        folder.Write("ask.bash", "cd \"$(dirname \"$0\")\"\nsource ./qmv40.bash\nCOMP_WORDS=(qmv40 " +
                                     std::string(each.typed) +
                                     ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_qmv40\necho \"${COMPREPLY[*]}\"\n");
        EXPECT_EQ(std::string(each.offered) + "\n", RunShell("bash '" + folder.Name("ask.bash") + "'").out) << each.why;
    }
}

TEST(ZshCompletion, IsValidForTheShell) {
    if (!HasProgram("zsh")) GTEST_SKIP() << "zsh is not installed";
    const TemporaryFolder folder;
    const ShellRun run =
        RunShell("zsh -n '" + folder.Write("_qmv40", manual::ZshCompletion(manual::DescribeTool())) + "'");
    EXPECT_EQ(0, run.exitCode) << run.out;
}

TEST(Manual, IsFormattedWithoutAWarning) {
    if (!HasProgram("groff")) GTEST_SKIP() << "groff is not installed";
    const TemporaryFolder folder;
    const std::string page = folder.Write("qmv40.1", manual::ManPage(manual::DescribeTool()));
    const ShellRun run = RunShell("groff -man -ww -z '" + page + "'");
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ("", run.out);
}

} // namespace
