#include "cli/Commands.h"
#include "cli/Options.h"
#include "cli/SelfCheckReport.h"

namespace {

struct SelfcheckOptions {
    bool json = false;
};

} // namespace

void AddSelfcheckCommand(CLI::App& tool, const Console& console) {
    CLI::App& command =
        *tool.add_subcommand("selfcheck", "Hold the signs and constants of this build against worked numbers");
    const auto options = std::make_shared<SelfcheckOptions>();
    command.add_flag("--json", options->json, "Print one JSON document instead of text");
    command.footer("Example:\n"
                   "  qmv40 selfcheck\n"
                   "\n"
                   "The built-in dimensions of the head are used, whatever the settings say, and nothing is written.\n"
                   "Exit code 4 when something is off: do not move a machine by that build.");
    command.callback([options, &console] { ReportSelfChecks(RunSelfChecks(), options->json, console); });
}
