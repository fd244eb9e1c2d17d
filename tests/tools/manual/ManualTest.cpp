#include "tools/manual/Manual.h"

#include "tests/tools/cli/ToolRun.h"

#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

using namespace qmv40;

namespace {

/// Whether the page contains the text. The message of a failure does not print the whole page.
testing::AssertionResult PageContains(const std::string& page, const std::string& text) {
    if (page.find(text) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "no '" << text << "'";
}

/// The options, subcommands and examples that the help of a command lists.
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

/// All commands with their help; a command is a list of words. The first one is the tool itself.
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

std::string CommandText(const std::vector<std::string>& command) {
    std::string text = "qmv40";
    for (const std::string& word : command) text += ' ' + word;
    return text;
}

std::string InRoff(const std::string& text) {
    std::string roff;
    for (const char c : text) roff += c == '-' ? "\\-" : std::string(1, c);
    return roff;
}

TEST(Manual, ContainsEveryCommandOptionAndExample) {
    const std::string page = manual::ManPage(manual::DescribeTool());
    const auto all = AllCommands();
    ASSERT_GE(all.size(), 12u) << "this test could not read the help";
    for (const auto& [command, help] : all) {
        const std::string title = command.empty() ? ".SH NAME" : ".SS " + InRoff(CommandText(command));
        EXPECT_TRUE(PageContains(page, "\n" + title + "\n"));
        for (const std::string& option : help.options) {
            EXPECT_TRUE(PageContains(page, "\\fB" + InRoff(option) + "\\fR")) << CommandText(command);
        }
        for (const std::string& example : help.examples) EXPECT_TRUE(PageContains(page, "\n" + InRoff(example) + "\n"));
    }
}

TEST(Manual, ContainsFilesEnvironmentAndExitCodes) {
    const std::string page = manual::ManPage(manual::DescribeTool());
    for (const char* text :
         {"/etc/qmv40/settings.reg", "QMV40_SETTINGS", "NO_COLOR", ".SH EXIT STATUS", QMV40_VERSION}) {
        EXPECT_TRUE(PageContains(page, text));
    }
}

TEST(Manual, CompletionsContainEveryCommandAndOption) {
    const cli::CommandDescription tool = manual::DescribeTool();
    for (const std::string& script :
         {manual::BashCompletion(tool), manual::ZshCompletion(tool), manual::PowerShellCompletion(tool)}) {
        for (const auto& [command, help] : AllCommands()) {
            for (const std::string& name : help.commands)
                EXPECT_TRUE(PageContains(script, name)) << CommandText(command);
            for (const std::string& option : help.options)
                EXPECT_TRUE(PageContains(script, option)) << CommandText(command);
        }
    }
}

// PowerShell rejects the whole script when a table has a key twice, or when a quote is not closed.
TEST(Manual, PowerShellTablesHaveUniqueKeysAndQuotedWords) {
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

TEST(Usage, HelpOfEveryCommandHasAnExampleJsonAndSettings) {
    for (const auto& [command, help] : AllCommands()) {
        if (command.empty()) continue;
        bool isShown = false;
        for (const std::string& example : help.examples)
            isShown = isShown || example.starts_with("  " + CommandText(command));
        EXPECT_TRUE(isShown) << CommandText(command);
        EXPECT_TRUE(help.options.contains("--json") || !help.commands.empty()) << CommandText(command);
        const bool usesSettings =
            command.front() != "selfcheck" && (command.front() != "settings" || command.back() == "show");
        EXPECT_EQ(usesSettings, help.options.contains("--settings")) << CommandText(command);
    }
}

} // namespace
