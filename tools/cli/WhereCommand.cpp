#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/model/TipPlace.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/MovesJson.h"
#include "tools/plans/PositionLine.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct WhereOptions : CommonOptions {
    GeometryOption geometry;
    model::HeadAngles at{};
    model::Vector3 tip;
    bool isUnlocked = false;
};

void Run(const WhereOptions& options, const text::Console& console) {
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const model::HeadModel head = ReadHead(options.geometry, console);
    const auto measured = options.isUnlocked ? model::Measured::Unlocked : model::Measured::Locked;
    const model::Vector3 place = PlaceOf(head, options.at, options.tip, measured);
    if (options.json) return text::PrintDocument("where", {{"position", plans::PointJson(place)}}, console.out);
    console.out << console.Strong("Where the machine stands with the tip on the pole sphere, the head at " +
                                  plans::HeadAnglesText(options.at) + " (deg) and " +
                                  (options.isUnlocked ? "unlocked" : "locked"))
                << '\n'
                << plans::PositionLine({place.x, place.y, place.z}) << '\n';
}

} // namespace

void AddWhereCommand(Command tool, const text::Console& console) {
    Command command = tool.AddCommand("where", "Show where the machine stands with a stylus tip on the pole sphere");
    const auto options = std::make_shared<WhereOptions>();
    AddGeometryOption(command, options->geometry);
    AddAtOption(command, options->at);
    AddTipOption(command, options->tip);
    command.AddFlag("--unlocked", options->isUnlocked, "The head is unlocked, as for a capture");
    AddCommonOptions(command, *options);
    command.SetFooter(
        "Examples:\n"
        "  qmv40 where --geometry head.ini --at 45,90 --tip 0,0,-180\n"
        "  qmv40 where --geometry head.ini --at 45,90 --tip 0,0,-180 --unlocked\n"
        "\n"
        "It is the position that the machine shows for the sphere's centre with no tip offset in force, as in a\n"
        "capture. The second opinion of `qmv40 geometry` gives the tip. `qmv40 which` is the inverse: A and B\n"
        "from a measured position.");
    command.OnRun([options, &console] { Run(*options, console); });
}

} // namespace qmv40::cli
