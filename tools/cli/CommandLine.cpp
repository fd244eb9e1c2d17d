#include "tools/cli/CommandLine.h"

#include "tools/text/Failures.h"
#include "tools/text/Text.h"

#include <CLI/CLI.hpp>
#include <span>
#include <sstream>

namespace qmv40::cli {

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

OptionDescription DescriptionOf(const CLI::Option& option) {
    OptionDescription described;
    for (const std::string& name : option.get_snames()) described.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) described.names.push_back("--" + name);
    const std::string type = option.get_items_expected_max() == 0 ? "" : option.get_type_name();
    described.choices = Choices(type);
    described.argument = described.choices.empty() ? type : text::Joined(described.choices, "|");
    described.description = option.get_description();
    described.isRequired = option.get_required();
    described.isRepeatable = option.get_expected_max() > 1;
    return described;
}

// NOLINTNEXTLINE(misc-no-recursion): a command can have commands of its own
CommandDescription DescriptionOf(const CLI::App& command, const std::string& before) {
    CommandDescription described;
    described.name = before + command.get_name();
    described.description = command.get_description();
    described.footer = command.get_footer();
    for (const CLI::Option* const option : command.get_options()) described.options.push_back(DescriptionOf(*option));
    for (const CLI::App* const each : command.get_subcommands({})) {
        described.commands.push_back(DescriptionOf(*each, described.name + " "));
    }
    return described;
}

/// The parser takes any word after an option for its value: `--output --json` would write a file named --json.
CLI::Option& RefusingOptions(CLI::Option& option) {
    option.check([](const std::string& value) {
        return value.starts_with("--") ? "a value is missing before " + value : std::string();
    });
    return option;
}

/// The command that the first arguments name, and how many of them do.
std::pair<const CLI::App*, std::size_t> Named(const CLI::App& root, std::span<const std::string> arguments) {
    const CLI::App* command = &root;
    std::size_t count = 0;
    for (const std::string& argument : arguments) {
        const auto named = command->get_subcommands([&](const CLI::App* each) { return each->get_name() == argument; });
        if (named.empty()) break;
        command = named.front();
        ++count;
    }
    return {command, count};
}

/// Empty when the arguments name a command that can be run, or when an option stands where a command is missing.
/// Otherwise a message with the known commands, which the parser's own message does not have.
std::string ProblemWithCommand(const CLI::App& root, std::span<const std::string> arguments) {
    const auto [command, count] = Named(root, arguments);
    std::vector<std::string> names;
    for (const CLI::App* const each : command->get_subcommands({})) names.push_back(each->get_name());
    if (names.empty()) return {};
    const std::string choice = text::Joined(names, ", ");
    if (count == arguments.size()) return "a command is missing: one of " + choice;
    if (arguments[count].starts_with("-")) return {};
    return "there is no command '" + arguments[count] + "': give one of " + choice;
}

void ReadOrRefuse(const char* name, const Command::Reader& read, const std::string& value) {
    const std::string problem = read(value);
    if (!problem.empty()) throw CLI::ValidationError(name, problem);
}

} // namespace

Option& Option::Require() {
    option->required();
    return *this;
}

Option& Option::AcceptOnly(const std::vector<std::string>& values) {
    option->check(CLI::IsMember(values));
    return *this;
}

Option& Option::Exclude(const char* other) {
    option->excludes(other);
    return *this;
}

Option& Option::Need(const char* other) {
    option->needs(other);
    return *this;
}

Command Command::AddCommand(const char* name, const char* description, const std::string& footer, Action run) {
    CLI::App& added = *app->add_subcommand(name, description)->footer(footer);
    if (run == nullptr) {
        added.require_subcommand(1);
    } else {
        added.callback([action = std::move(run), place = chosen] { *place = action; });
    }
    return {added, *chosen};
}

Option Command::AddFlag(const char* name, bool& flag, const char* description) {
    return Option(*app->add_flag(name, flag, description));
}

Option Command::AddText(const char* name, std::string& text, const char* valueName, const char* description) {
    return Option(RefusingOptions(*app->add_option(name, text, description)->type_name(valueName)));
}

Option Command::AddTexts(const char* name, std::vector<std::string>& texts, const char* valueName,
                         const char* description) {
    return Option(
        RefusingOptions(*app->add_option(name, texts, description)->type_name(valueName)->allow_extra_args(false)));
}

Option Command::AddValue(const char* name, const char* valueName, const char* description, Reader read) {
    const auto take = [name, read = std::move(read)](const std::string& value) { ReadOrRefuse(name, read, value); };
    return Option(*app->add_option_function<std::string>(name, take, description)->type_name(valueName));
}

Option Command::AddValues(const char* name, const char* valueName, const char* description, Reader read) {
    const auto take = [name, read = std::move(read)](const std::vector<std::string>& values) {
        for (const std::string& value : values) ReadOrRefuse(name, read, value);
    };
    return Option(*app->add_option_function<std::vector<std::string>>(name, take, description)->type_name(valueName));
}

CommandLine::CommandLine(const char* name, const char* description, const char* footer, const char* version)
    : app(std::make_unique<CLI::App>(description, name)) {
    app->allow_windows_style_options(false); // a value may begin with a slash, as file names do
    app->set_version_flag("--version", version);
    app->footer(footer)->require_subcommand(1);
}

CommandLine::~CommandLine() = default;

Command CommandLine::Root() { return {*app, chosen}; }

void CommandLine::Run(const std::vector<std::string>& arguments, const text::Console& console) {
    try {
        app->parse(std::vector(arguments.rbegin(), arguments.rend())); // the parser takes them from the end
    } catch (const CLI::Success& help) {
        app->exit(help, console.out, console.err);
        return;
    } catch (const CLI::ParseError& error) {
        const std::string problem = ProblemWithCommand(*app, arguments);
        throw text::UsageError{problem.empty() ? error.what() : problem};
    }
    chosen(console);
}

std::string CommandLine::CommandOf(const std::vector<std::string>& arguments) const {
    std::string words;
    for (const std::string& word : std::span(arguments).first(Named(*app, arguments).second))
        words.append(words.empty() ? "" : "-").append(word);
    return words;
}

CommandDescription CommandLine::Describe() const { return DescriptionOf(*app, ""); }

} // namespace qmv40::cli
