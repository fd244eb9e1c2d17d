#include "manual/Manual.h"

#include "cli/Tool.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

namespace {

/// The words in the braces of a type such as TEXT:{circle,plane,line}.
std::vector<std::string> Choices(const std::string& type) {
    const std::size_t open = type.find('{');
    const std::size_t close = type.rfind('}');
    if (open == std::string::npos || close == std::string::npos) return {};
    std::vector<std::string> choices;
    std::istringstream words(type.substr(open + 1, close - open - 1));
    for (std::string word; std::getline(words, word, ',');) choices.push_back(word);
    return choices;
}

std::string Joined(const std::vector<std::string>& words, const char* separator) {
    std::string joined;
    for (const std::string& word : words) joined += (joined.empty() ? "" : separator) + word;
    return joined;
}

ManualOption DescribeOption(const CLI::Option& option) {
    ManualOption described;
    for (const std::string& name : option.get_snames()) described.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) described.names.push_back("--" + name);
    const std::string type = option.get_items_expected_max() == 0 ? "" : option.get_type_name();
    described.choices = Choices(type);
    described.argument = described.choices.empty() ? type : Joined(described.choices, "|");
    described.description = option.get_description();
    described.isRequired = option.get_required();
    described.isRepeatable = option.get_expected_max() > 1;
    return described;
}

// NOLINTNEXTLINE(misc-no-recursion): commands have commands of their own
ManualCommand DescribeCommand(const CLI::App& command, const std::string& before) {
    ManualCommand described;
    described.name = before + command.get_name();
    described.description = command.get_description();
    described.footer = command.get_footer();
    for (const CLI::Option* const option : command.get_options()) described.options.push_back(DescribeOption(*option));
    for (const CLI::App* const each : command.get_subcommands({})) {
        described.commands.push_back(DescribeCommand(*each, described.name + " "));
    }
    return described;
}

} // namespace

ManualCommand DescribeTool() {
    std::ostringstream nowhere;
    const Console console{nowhere, nowhere};
    CLI::App tool;
    MakeTool(tool, console);
    return DescribeCommand(tool, "");
}
