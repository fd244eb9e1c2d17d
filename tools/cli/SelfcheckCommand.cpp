#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/selfcheck/SelfCheckReport.h"

namespace qmv40::cli {

namespace {

struct SelfcheckOptions {
    bool json = false;
};

void Run(const SelfcheckOptions& options, const text::Console& console) {
    if (!selfcheck::ReportSelfChecks(selfcheck::RunSelfChecks(), options.json, console))
        throw CommandEnded{exitFindings};
}

constexpr const char* selfcheckFooter =
    "Example:\n"
    "  qmv40 selfcheck\n"
    "\n"
    "The built-in dimensions of the head are used, not the settings, and no file is written.\n"
    "Exit code 4 when a number is wrong: do not move a machine with that build.";

} // namespace

void AddSelfcheckCommand(Command tool) {
    auto [command, options] = tool.AddCommand<SelfcheckOptions>(
        "selfcheck", "Compare the signs and constants of this build with worked numbers", selfcheckFooter, Run);
    AddJsonOption(command, options.json);
}

} // namespace qmv40::cli
