#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/component/Calculator.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/MovesJson.h"
#include "tools/plans/PositionLine.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct StartOptions : CommonOptions {
    GeometryOption geometry;
    model::HeadAngles from{};
};

void Run(const StartOptions& options, const text::Console& console) {
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const settings::GeometryFile geometry = ReadGeometryFile(options.geometry, console);
    component::Calculator calculator;
    calculator.LoadHeadGeometry(geometry.Name());
    calculator.SetCurrentHeadPosition(options.from);
    const XYZData start = calculator.StartPosition();
    if (options.json) return text::PrintDocument("start", {{"startPosition", plans::PositionJson(start)}}, console.out);
    console.out << console.Strong("Start of any indexing from " + plans::HeadAnglesText(options.from) + " (deg)")
                << '\n'
                << plans::PositionLine(start) << '\n';
}

} // namespace

void AddStartCommand(Command tool, const text::Console& console) {
    Command command = tool.AddCommand("start", "Show where every indexing from a head position begins");
    const auto options = std::make_shared<StartOptions>();
    AddGeometryOption(command, options->geometry);
    AddFromOption(command, options->from);
    AddCommonOptions(command, *options);
    command.SetFooter("Example:\n"
                      "  qmv40 start --geometry head.ini --from 45,90\n"
                      "\n"
                      "Bring the machine there by a path of your own before running the moves of a plan.");
    command.OnRun([options, &console] { Run(*options, console); });
}

} // namespace qmv40::cli
