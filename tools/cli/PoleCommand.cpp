#include "cli/Calculator.h"
#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/Options.h"
#include "cli/Platform.h"
#include "cli/PositionLine.h"

namespace {

struct PoleOptions : CommonOptions {
    std::string geometry;
};

void Run(const PoleOptions& options, const Console& console) {
    const SettingsOverride settings(options.settings);
    Calculator calculator;
    calculator.LoadHeadGeometry(options.geometry);
    const XYZData pole = calculator.PoleSpherePosition();
    if (options.json) return PrintJson({{"poleSpherePosition", PositionJson(pole)}}, console.out);
    console.out << console.Strong("Centre of the pole sphere") << '\n' << PositionLine(pole) << '\n';
}

} // namespace

void AddPoleCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("pole", "Show the centre of the pole sphere");
    const auto options = std::make_shared<PoleOptions>();
    AddGeometryOption(command, options->geometry);
    AddCommonOptions(command, *options);
    command.footer("Example:\n"
                   "  qmv40 pole --geometry head.ini\n"
                   "\n"
                   "It is the head centre as well: the point where the A and B axes meet.");
    command.callback([options, &console] { Run(*options, console); });
}
