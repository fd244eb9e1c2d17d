#include "tools/manual/Manual.h"

#include "tests/tools/cli/ToolRun.h"

#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

using namespace qmv40;

namespace {

/// Without the whole page in the message, which would hide the rest.
testing::AssertionResult PageHolds(const std::string& page, const std::string& text) {
    if (page.find(text) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "no '" << text << "'";
}

/// What the help of a command says, by itself: its options and the commands below it.
struct HelpText {
    std::set<std::string> options;
    std::vector<std::string> commands;
    std::vector<std::string> examples;
};

HelpText HelpOf(std::vector<std::string> command) {
    command.emplace_back("--help");
    HelpText help;
    std::istringstream lines(RunQmv40(command).out);
    bool areCommands = false;
    for (std::string line; std::getline(lines, line);) {
        areCommands = line == "Subcommands:" || (areCommands && !line.empty());
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (areCommands && line.starts_with("  ")) help.commands.push_back(word);
        if (line.starts_with("  qmv40 ")) help.examples.push_back(line);
        if (!line.starts_with("  -")) continue;
        const std::size_t comma = word.find(',');
        help.options.insert(comma == std::string::npos ? word : word.substr(comma + 1));
    }
    return help;
}

/// Every command, as it is typed, with its help.
std::vector<std::pair<std::vector<std::string>, HelpText>> AllCommands() {
    std::vector<std::pair<std::vector<std::string>, HelpText>> all{{{}, HelpOf({})}};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::vector<std::string> names = all[i].second.commands;
        for (const std::string& name : names) {
            std::vector<std::string> command = all[i].first;
            command.push_back(name);
            const HelpText help = HelpOf(command);
            all.emplace_back(std::move(command), help);
        }
    }
    return all;
}

std::string Typed(const std::vector<std::string>& command) {
    std::string typed = "qmv40";
    for (const std::string& word : command) typed += ' ' + word;
    return typed;
}

std::string InRoff(const std::string& text) {
    std::string roff;
    for (const char c : text) roff += c == '-' ? "\\-" : std::string(1, c);
    return roff;
}

TEST(Manual, HoldsEveryCommandEveryOptionAndEveryExample) {
    const std::string page = manual::ManPage(manual::DescribeTool());
    const auto all = AllCommands();
    ASSERT_GE(all.size(), 12u) << "the help was not understood";
    for (const auto& [command, help] : all) {
        const std::string title = command.empty() ? ".SH NAME" : ".SS " + InRoff(Typed(command));
        EXPECT_TRUE(PageHolds(page, "\n" + title + "\n"));
        for (const std::string& option : help.options) {
            EXPECT_TRUE(PageHolds(page, "\\fB" + InRoff(option) + "\\fR")) << Typed(command);
        }
        for (const std::string& example : help.examples) EXPECT_TRUE(PageHolds(page, "\n" + InRoff(example) + "\n"));
    }
}

TEST(Manual, TellsFilesEnvironmentAndExitCodes) {
    const std::string page = manual::ManPage(manual::DescribeTool());
    for (const char* text :
         {"/etc/qmv40/settings.reg", "QMV40_SETTINGS", "NO_COLOR", ".SH EXIT STATUS", QMV40_VERSION}) {
        EXPECT_TRUE(PageHolds(page, text));
    }
}

TEST(Manual, CompletionsHoldEveryCommandAndEveryOption) {
    const cli::CommandDescription tool = manual::DescribeTool();
    for (const std::string& script :
         {manual::BashCompletion(tool), manual::ZshCompletion(tool), manual::PowerShellCompletion(tool)}) {
        for (const auto& [command, help] : AllCommands()) {
            for (const std::string& name : help.commands) EXPECT_TRUE(PageHolds(script, name)) << Typed(command);
            for (const std::string& option : help.options) EXPECT_TRUE(PageHolds(script, option)) << Typed(command);
        }
    }
}

// PowerShell refuses the whole script for a key that stands twice in a table, or for a quote that is not closed.
TEST(Manual, PowerShellTablesNameEachKeyOnceAndQuoteEveryWord) {
    const std::regex row("        '([^']*)' = @\\(('[^'$`]+'(, '[^'$`]+')*)?\\)");
    std::istringstream script(manual::PowerShellCompletion(manual::DescribeTool()));
    std::set<std::string> keys;
    bool isInTable = false;
    int tables = 0;
    for (std::string line; std::getline(script, line);) {
        std::smatch match;
        if (line == "    }") isInTable = false;
        if (isInTable) {
            EXPECT_TRUE(std::regex_match(line, match, row)) << line;
            EXPECT_TRUE(keys.insert(match[1]).second) << line;
        }
        if (!line.ends_with(" = @{")) continue;
        isInTable = true;
        keys.clear();
        ++tables;
    }
    EXPECT_EQ(tables, 2);
    EXPECT_FALSE(isInTable);
}

TEST(Usage, EveryCommandTeachesByAnExampleOfItself) {
    for (const auto& [command, help] : AllCommands()) {
        if (command.empty()) continue;
        bool isShown = false;
        for (const std::string& example : help.examples)
            isShown = isShown || example.starts_with("  " + Typed(command));
        EXPECT_TRUE(isShown) << Typed(command);
        EXPECT_TRUE(help.options.contains("--json") || !help.commands.empty()) << Typed(command);
    }
}

} // namespace
