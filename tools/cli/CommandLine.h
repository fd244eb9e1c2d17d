#pragma once

#include "tools/text/Console.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// The definition of a command line. Only CommandLine.cpp knows the library that parses it.

namespace qmv40::cli {

/// One option of a command, for further restrictions.
class Option {
public:
    explicit Option(CLI::Option& theOption) : option(&theOption) {}

    Option& Require();
    Option& AcceptOnly(const std::vector<std::string>& values);
    // `other`: an option of the same command, with its dashes
    Option& Exclude(const char* other);
    Option& Need(const char* other);

private:
    CLI::Option* option;
};

/// A command, or the tool itself. A name that begins with two dashes is an option; any other name is a positional
/// argument. The variables that options fill must exist until the command line was run. Descriptions do not end
/// with a full stop.
class Command {
public:
    /// Takes a value and returns what is wrong with it, or an empty text.
    using Reader = std::function<std::string(const std::string& value)>;
    using Action = std::function<void(const text::Console& console)>;

    Command(CLI::App& theApp, Action& theChosen) : app(&theApp), chosen(&theChosen) {}

    /// `footer`: the text at the end of the command's help. Without `run`, a call must name one of its commands.
    Command AddCommand(const char* name, const char* description, const std::string& footer, Action run = nullptr);
    /// A command with options in an object of its own, with which it is run.
    template <typename Options>
    std::pair<Command, Options&> AddCommand(const char* name, const char* description, const std::string& footer,
                                            void (*run)(const Options& options, const text::Console& console)) {
        const auto options = std::make_shared<Options>();
        const auto action = [options, run](const text::Console& console) { run(*options, console); };
        return {AddCommand(name, description, footer, action), *options};
    }

    Option AddFlag(const char* name, bool& flag, const char* description);
    Option AddText(const char* name, std::string& text, const char* valueName, const char* description);
    /// Can be given several times, with one value each.
    Option AddTexts(const char* name, std::vector<std::string>& texts, const char* valueName, const char* description);
    Option AddValue(const char* name, const char* valueName, const char* description, Reader read);
    /// Can be given several times, with one or more values each.
    Option AddValues(const char* name, const char* valueName, const char* description, Reader read);
    /// `parse` makes the value of a text. When it returns an empty optional, the message is the text and `problem`.
    template <typename Parse, typename Value> Option AddParsed(const char* name, const char* valueName,
                                                               const char* description, Parse parse,
                                                               const char* problem, Value& value) {
        return AddValue(name, valueName, description, [parse, problem, &value](const std::string& text) -> std::string {
            const auto parsed = parse(text);
            if (!parsed) return "'" + text + "' " + problem;
            value = *parsed;
            return "";
        });
    }

private:
    CLI::App* app;
    Action* chosen; ///< becomes the action of the command that the arguments name
};

struct OptionDescription {
    std::vector<std::string> names;   ///< "-h", "--help"; empty for a positional argument
    std::string argument;             ///< name of the value, such as FILE; empty for a switch
    std::vector<std::string> choices; ///< the only values that are accepted; empty when any value is
    std::string description;
    bool isRequired;
    bool isRepeatable;

    bool IsFile() const { return argument == "FILE"; }
    bool IsPositional() const { return names.empty(); }
};

struct CommandDescription {
    std::string name; ///< all words: "qmv40 settings write"
    std::string description;
    std::string footer;
    std::vector<OptionDescription> options;
    std::vector<CommandDescription> commands; ///< a call must name one of them; empty for most commands
};

class CommandLine {
public:
    CommandLine(const char* name, const char* description, const char* footer, const char* version);
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine();

    Command Root();
    /// Reads the arguments after the tool's name and runs the command that they name. Prints help on request. Throws
    /// UsageError for arguments that are wrong. What the command throws passes through.
    void Run(const std::vector<std::string>& arguments, const text::Console& console);
    /// The command at the beginning of the arguments, its words joined by dashes: "move", "settings-show". Empty when
    /// they begin with no command.
    std::string CommandOf(const std::vector<std::string>& arguments) const;
    CommandDescription Describe() const;

private:
    std::unique_ptr<CLI::App> app;
    Command::Action chosen;
};

} // namespace qmv40::cli
