#include "tools/cli/Commands.h"
#include "tools/cli/ExitCode.h"
#include "tools/cli/Options.h"
#include "tools/selfcheck/SelfCheckReport.h"

namespace qmv40::cli {

namespace {

struct SelfcheckOptions {
    bool json = false;
};

} // namespace

void AddSelfcheckCommand(Command tool, const text::Console& console) {
    Command command = tool.AddCommand("selfcheck", "Compare the signs and constants of this build with worked numbers");
    const auto options = std::make_shared<SelfcheckOptions>();
    AddJsonOption(command, options->json);
    command.SetFooter("Example:\n"
                      "  qmv40 selfcheck\n"
                      "\n"
                      "The built-in dimensions of the head are used, not the settings, and nothing is written.\n"
                      "Exit code 4 when a number is wrong: do not move a machine with that build.");
    command.OnRun([options, &console] {
        const bool isPassed = selfcheck::ReportSelfChecks(selfcheck::RunSelfChecks(), options->json, console);
        if (!isPassed) throw CommandEnded{exitFindings};
    });
}

} // namespace qmv40::cli
