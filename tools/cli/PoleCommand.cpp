#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/component/Calculator.h"
#include "tools/plans/MovesJson.h"
#include "tools/plans/PositionLine.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct PoleOptions : CommonOptions {
    GeometryOption geometry;
};

void Run(const PoleOptions& options, const text::Console& console) {
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const settings::GeometryFile geometry = ReadGeometryFile(options.geometry, console);
    component::Calculator calculator;
    calculator.LoadHeadGeometry(geometry.Name());
    const XYZData pole = calculator.PoleSpherePosition();
    if (options.json)
        return text::PrintDocument("pole", {{"poleSpherePosition", plans::PositionJson(pole)}}, console.out);
    console.out << console.Strong("Centre of the pole sphere") << '\n' << plans::PositionLine(pole) << '\n';
}

} // namespace

void AddPoleCommand(Command tool, const text::Console& console) {
    Command command = tool.AddCommand("pole", "Show the centre of the pole sphere");
    const auto options = std::make_shared<PoleOptions>();
    AddGeometryOption(command, options->geometry);
    AddCommonOptions(command, *options);
    command.SetFooter("Example:\n"
                      "  qmv40 pole --geometry head.ini\n"
                      "\n"
                      "It is the head centre of the geometry as well.");
    command.OnRun([options, &console] { Run(*options, console); });
}

} // namespace qmv40::cli
