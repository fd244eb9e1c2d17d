#include "cli/Calculator.h"
#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/Options.h"
#include "cli/Platform.h"
#include "cli/PositionLine.h"

namespace {

struct StartOptions : CommonOptions {
    std::string geometry;
    HeadAngles from{};
};

void Run(const StartOptions& options, const Console& console) {
    const SettingsOverride settings(options.settings);
    Calculator calculator;
    calculator.LoadHeadGeometry(options.geometry);
    calculator.SetCurrentHeadPosition(options.from);
    const XYZData start = calculator.StartPosition();
    if (options.json) return PrintJson({{"startPosition", PositionJson(start)}}, console.out);
    console.out << console.Strong("Start of any indexing from " + HeadAnglesText(options.from) + " (deg)") << '\n'
                << PositionLine(start) << '\n';
}

} // namespace

void AddStartCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("start", "Show where every indexing from a head position begins");
    const auto options = std::make_shared<StartOptions>();
    AddGeometryOption(command, options->geometry);
    AddFromOption(command, options->from);
    AddCommonOptions(command, *options);
    command.footer("Example:\n"
                   "  qmv40 start --geometry head.ini --from 45,90\n"
                   "\n"
                   "Bring the machine there by a path of your own before running the moves of a plan.");
    command.callback([options, &console] { Run(*options, console); });
}
