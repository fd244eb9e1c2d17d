#include "cli/Tool.h"

#include "cli/Commands.h"
#include "cli/Failures.h"
#include "cli/Json.h"
#include "cli/Platform.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>

namespace {

constexpr const char* description =
    "Measures a motorless indexable probe head and plans the machine's moves that index it.";

constexpr const char* footer =
    "Examples:\n"
    "  qmv40 geometry --a-axis a-axis.csv --b-axis b-axis.csv --output head.ini\n"
    "  qmv40 move --geometry head.ini --from 0,0 --to 45,90\n"
    "  qmv40 move --help\n"
    "\n"
    "Angles are degrees. Lengths are in the unit of the captured points; the head's built-in dimensions are\n"
    "millimetres, so capture in millimetres. Data goes to standard output, messages to standard error.\n"
    "Exit codes: 0 done; 1 the component refused; 2 wrong usage; 3 a file is missing, malformed or cannot be\n"
    "written; 4 a check found something wrong. Set NO_COLOR for text without colours.";

/// The command that was asked for prints documents, its failures included.
bool WantsJson(const CLI::App& tool) { // NOLINT(misc-no-recursion): commands may have commands of their own
    return std::ranges::any_of(tool.get_subcommands(), [](const CLI::App* command) {
        const CLI::Option* const json = command->get_option_no_throw("--json");
        return (json != nullptr && json->count() != 0) || WantsJson(*command);
    });
}

void Report(const ComponentError& error, const Console& console) {
    console.err << "qmv40: error " << CodeText(error.code) << " from " << error.source << ": " << error.description
                << '\n';
    if (const std::string remedy = Remedy(error.code); !remedy.empty()) console.err << remedy << '\n';
}

void Report(const InputError& error, const Console& console) {
    console.err << error.file << (error.line ? ":" + std::to_string(*error.line) : "") << ": " << error.reason << '\n';
}

template <typename Error> int Refused(const Error& error, int exitCode, const CLI::App& tool, const Console& console) {
    if (WantsJson(tool)) {
        PrintJson(ErrorJson(error), console.out);
    } else {
        Report(error, console);
    }
    return exitCode;
}

/// The parser takes what follows an empty value for the value: `--points= --json` would look for a file named --json.
void RefuseEmptyValues(const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
        const bool isEmptyValue = argument.starts_with("--") && argument.find('=') == argument.size() - 1;
        if (isEmptyValue) throw UsageError{argument + " is given no value"};
    }
}

int RunCommand(std::vector<std::string> arguments, CLI::App& tool, const Console& console) {
    try {
        const ComponentRuntime runtime;
        RefuseEmptyValues(arguments);
        std::ranges::reverse(arguments); // the parser takes them from the back
        tool.parse(arguments);
        return exitDone;
    } catch (const CLI::ParseError& error) {
        return tool.exit(error, console.out, console.err) == 0 ? exitDone : exitWrongUsage;
    } catch (const CommandEnded& ended) {
        return ended.exitCode;
    } catch (const UsageError& error) {
        console.err << "qmv40: " << error.reason << '\n';
        return exitWrongUsage;
    } catch (const InputError& error) {
        return Refused(error, exitBadFile, tool, console);
    } catch (const ComponentError& error) {
        return Refused(error, exitRefused, tool, console);
    } catch (const std::exception& error) {
        // Out of memory, a working folder that vanished: nothing that a command foresees.
        console.err << "qmv40: " << error.what() << '\n';
        return exitRefused;
    }
}

} // namespace

void MakeTool(CLI::App& tool, const Console& console) {
    tool.name("qmv40");
    tool.description(description);
    tool.allow_windows_style_options(false); // a name that begins with a slash is a file's
    tool.set_version_flag("--version", "qmv40 " QMV40_VERSION);
    tool.footer(footer);
    tool.require_subcommand(1);
    AddGeometryCommand(tool, console);
    AddMoveCommand(tool, console);
    AddCheckCommand(tool, console);
    AddViewCommand(tool, console);
    AddStartCommand(tool, console);
    AddPoleCommand(tool, console);
    AddFitCommand(tool, console);
    AddSettingsCommand(tool, console);
    AddSelfcheckCommand(tool, console);
    AddDoctorCommand(tool, console);
}

int RunTool(std::vector<std::string> arguments, const Console& console) {
    CLI::App tool;
    MakeTool(tool, console);
    const int exitCode = RunCommand(std::move(arguments), tool, console);
    if (console.out.flush()) return exitCode;
    console.err << "qmv40: the output could not be written\n";
    return exitBadFile;
}

bool ColourIsWelcome() {
    const char* const noColour = std::getenv("NO_COLOR");
    return noColour == nullptr || *noColour == '\0';
}
