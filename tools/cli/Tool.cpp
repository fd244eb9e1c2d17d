#include "tools/cli/Tool.h"

#include "tools/cli/Commands.h"
#include "tools/component/ComponentError.h"
#include "tools/text/Failures.h"
#include "tools/text/Json.h"

#include <algorithm>
#include <cstdlib>

namespace qmv40::cli {

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

void Report(const component::ComponentError& error, const text::Console& console) {
    if (error.plan != 0) console.err << "Plan " << error.plan << " of the tour:\n";
    console.err << "qmv40: error " << component::CodeText(error.code) << " from " << error.source << ": "
                << error.description << '\n';
    if (const std::string remedy = component::Remedy(error.code); !remedy.empty()) console.err << remedy << '\n';
}

void Report(const text::InputError& error, const text::Console& console) {
    console.err << text::MessageOf(error) << '\n';
}

void Report(const text::DoubtfulInput& doubtful, const text::Console& console) {
    for (const text::InputError& problem : doubtful.problems) Report(problem, console);
    console.err << doubtful.remedy << '\n';
}

/// The line of the first problem; the description has all problems.
text::Json ErrorJson(const text::DoubtfulInput& doubtful) {
    text::InputError all{doubtful.problems.front().file, doubtful.problems.front().line, ""};
    for (const text::InputError& problem : doubtful.problems) all.reason += problem.reason + ". ";
    all.reason += doubtful.remedy;
    return text::ErrorJson(all);
}

void Report(const text::UsageError& error, const text::Console& console) {
    console.err << "qmv40: " << error.reason << "\nRun it with --help for more information.\n";
}

void Report(const std::exception& error, const text::Console& console) {
    console.err << "qmv40: " << error.what() << '\n';
}

text::Json ErrorJson(const text::UsageError& error) { return text::ErrorJson(error.reason); }
text::Json ErrorJson(const std::exception& error) { return text::ErrorJson(std::string(error.what())); }

/// Reports that a command could not do its work: as a document when one was asked for, otherwise as a message.
class FailureReport {
public:
    FailureReport(const CommandLine& tool, const std::vector<std::string>& arguments, const text::Console& theConsole)
        : command(tool.CommandOf(arguments)), isJsonWanted(std::ranges::count(arguments, "--json") != 0),
          console(theConsole) {
        if (command.empty()) command = "error";
    }

    template <typename Error> int Print(const Error& error, ExitCode exitCode) const {
        if (isJsonWanted) {
            text::PrintDocument(command, ErrorJson(error), console.out);
        } else {
            Report(error, console);
        }
        return exitCode;
    }

private:
    std::string command;
    bool isJsonWanted;
    const text::Console& console;
};

/// The parser would take the argument after an empty value for the value: `--points= --json` would look for a file
/// named --json.
void RefuseEmptyValues(const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
        const bool isEmptyValue = argument.starts_with("--") && argument.find('=') == argument.size() - 1;
        if (isEmptyValue) throw text::UsageError{argument + " is given no value"};
    }
}

int RunCommand(const std::vector<std::string>& arguments, CommandLine& tool, const text::Console& console) {
    const FailureReport report(tool, arguments, console);
    try {
        RefuseEmptyValues(arguments);
        tool.Run(arguments, console);
        return exitDone;
    } catch (const CommandEnded& ended) {
        return ended.exitCode;
    } catch (const text::UsageError& error) {
        return report.Print(error, exitWrongUsage);
    } catch (const text::InputError& error) {
        return report.Print(error, exitBadFile);
    } catch (const text::DoubtfulInput& error) {
        return report.Print(error, exitFindings);
    } catch (const component::ComponentError& error) {
        return report.Print(error, exitRefused);
    } catch (const std::exception& error) {
        // Causes that no command expects, such as no memory or a removed working folder.
        return report.Print(error, exitRefused);
    }
}

} // namespace

std::unique_ptr<CommandLine> MakeTool() {
    auto tool = std::make_unique<CommandLine>("qmv40", description, footer, "qmv40 " QMV40_VERSION);
    for (const auto add : {AddGeometryCommand, AddMoveCommand, AddExportCommand, AddCheckCommand, AddViewCommand,
                           AddWhereCommand, AddWhichCommand, AddStartCommand, AddPoleCommand, AddRecoverCommand,
                           AddFitCommand, AddSettingsCommand, AddSelfcheckCommand, AddDoctorCommand}) {
        add(tool->Root());
    }
    return tool;
}

int RunTool(const std::vector<std::string>& arguments, const text::Console& console) {
    const std::unique_ptr<CommandLine> tool = MakeTool();
    const int exitCode = RunCommand(arguments, *tool, console);
    if (console.out.flush()) return exitCode;
    console.err << "qmv40: the output could not be written\n";
    return exitBadFile;
}

bool ColourIsWelcome() {
    const char* const noColour = std::getenv("NO_COLOR");
    return noColour == nullptr || *noColour == '\0';
}

} // namespace qmv40::cli
