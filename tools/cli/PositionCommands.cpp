// The commands that answer with one position of the machine: where, start and pole.

#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/component/Calculator.h"
#include "tools/model/TipPlace.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/MovesJson.h"
#include "tools/plans/PlannedMove.h"
#include "tools/plans/PositionLine.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct PositionOptions : CommonOptions {
    GeometryOption geometry;
};

struct StartOptions : PositionOptions {
    model::HeadAngles from{};
};

struct WhereOptions : PositionOptions {
    model::HeadAngles at{};
    model::Vector3 tip;
    bool isUnlocked = false;
};

void Print(const std::string& title, const XYZData& position, const text::Console& console) {
    console.out << console.Strong(title) << '\n' << plans::PositionLine(plans::VectorOf(position)) << '\n';
}

component::Calculator LoadedCalculator(const PositionOptions& options, const text::Console& console) {
    const settings::GeometryFile geometry = ReadGeometryFile(options.geometry, console);
    component::Calculator calculator;
    calculator.LoadHeadGeometry(geometry.Name());
    return calculator;
}

void ShowWhere(const WhereOptions& options, const text::Console& console) {
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const model::HeadModel head = ReadHead(options.geometry, console);
    const auto measured = options.isUnlocked ? model::Measured::Unlocked : model::Measured::Locked;
    const model::Vector3 place = PlaceOf(head, options.at, options.tip, measured);
    if (options.json) return text::PrintDocument("where", {{"position", text::PointJson(place)}}, console.out);
    Print("Where the machine stands with the tip on the pole sphere, the head at " + plans::HeadAnglesText(options.at) +
              " (deg) and " + (options.isUnlocked ? "unlocked" : "locked"),
          {place.x, place.y, place.z}, console);
}

void ShowStart(const StartOptions& options, const text::Console& console) {
    [[maybe_unused]] const SettingsInUse settings(options, console);
    component::Calculator calculator = LoadedCalculator(options, console);
    calculator.SetCurrentHeadPosition(options.from);
    const XYZData start = calculator.StartPosition();
    if (options.json) return text::PrintDocument("start", {{"startPosition", plans::PositionJson(start)}}, console.out);
    Print("Start of any indexing from " + plans::HeadAnglesText(options.from) + " (deg)", start, console);
}

void ShowPole(const PositionOptions& options, const text::Console& console) {
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const XYZData pole = LoadedCalculator(options, console).PoleSpherePosition();
    if (options.json)
        return text::PrintDocument("pole", {{"poleSpherePosition", plans::PositionJson(pole)}}, console.out);
    Print("Centre of the pole sphere", pole, console);
}

constexpr const char* whereFooter =
    "Examples:\n"
    "  qmv40 where --geometry head.ini --at 45,90 --tip 0,0,-180\n"
    "  qmv40 where --geometry head.ini --at 45,90 --tip 0,0,-180 --unlocked\n"
    "\n"
    "It is the position that the machine shows for the sphere's centre with no tip offset in force, as in a\n"
    "capture. The second opinion of `qmv40 geometry` gives the tip. `qmv40 which` is the inverse: A and B\n"
    "from a measured position.";

constexpr const char* startFooter = "Example:\n"
                                    "  qmv40 start --geometry head.ini --from 45,90\n"
                                    "\n"
                                    "Bring the machine there by a path of your own before running the moves of a plan.";

constexpr const char* poleFooter = "Example:\n"
                                   "  qmv40 pole --geometry head.ini\n"
                                   "\n"
                                   "It is the head centre of the geometry as well.";

} // namespace

void AddWhereCommand(Command tool) {
    auto [command, options] = tool.AddCommand<WhereOptions>(
        "where", "Show where the machine stands with a stylus tip on the pole sphere", whereFooter, ShowWhere);
    AddGeometryOption(command, options.geometry);
    AddAnglesOption(command, "--at", options.at).Require();
    AddTipOption(command, options.tip);
    command.AddFlag("--unlocked", options.isUnlocked, "The head is unlocked, as for a capture");
    AddCommonOptions(command, options);
}

void AddStartCommand(Command tool) {
    auto [command, options] = tool.AddCommand<StartOptions>(
        "start", "Show where every indexing from a head position begins", startFooter, ShowStart);
    AddGeometryOption(command, options.geometry);
    AddAnglesOption(command, "--from", options.from).Require();
    AddCommonOptions(command, options);
}

void AddPoleCommand(Command tool) {
    auto [command, options] =
        tool.AddCommand<PositionOptions>("pole", "Show the centre of the pole sphere", poleFooter, ShowPole);
    AddGeometryOption(command, options.geometry);
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
