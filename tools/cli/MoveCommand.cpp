#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/cli/PlanSelection.h"
#include "tools/plans/MoveTable.h"
#include "tools/plans/MovesJson.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct MoveOptions : CommonOptions {
    GeometryOption geometry;
    model::HeadAngles from{};
    std::vector<model::HeadAngles> targets;
    bool csv = false;
};

text::Json PlansJson(const std::vector<plans::Plan>& plans) {
    text::Json documents = text::Json::Array();
    for (const plans::Plan& plan : plans) {
        documents.PushBack({{"from", plans::AnglesJson(plan.from)},
                            {"to", plans::AnglesJson(plan.to)},
                            {"moves", plans::MovesJson(plan.moves)}});
    }
    return {{"plans", documents}};
}

void Run(const MoveOptions& options, const text::Console& console) {
    const SettingsInUse settings(options, console);
    const settings::GeometryFile geometry = ReadGeometryFile(options.geometry, console);
    const std::vector<plans::Plan> plans = plans::PlanTour(geometry.Name(), options.from, options.targets);
    if (options.json) return text::PrintJson(PlansJson(plans), console.out);
    if (options.csv) return plans::PrintMovesAsCsv(plans, console);
    plans::PrintMoveTables(plans, console);
}

} // namespace

void AddMoveCommand(Command tool, const text::Console& console) {
    Command command = tool.AddCommand("move", "Plan the 19 moves that index the head");
    const auto options = std::make_shared<MoveOptions>();
    AddGeometryOption(command, options->geometry);
    AddFromOption(command, options->from);
    AddToOption(command, options->targets).Require();
    AddCommonOptions(command, *options);
    command.AddFlag("--csv", options->csv, "Print one row a move: Plan,Move,Name,Kind,X,Y,Z,i,j,k,RotationAngle")
        .Exclude("--json");
    command.SetFooter(
        "Examples:\n"
        "  qmv40 move --geometry head.ini --from 0,0 --to 45,90\n"
        "  qmv40 move --geometry head.ini --from 0,0 --to 45,90 --to 90,-180 --to 0,0 --csv\n"
        "\n"
        "Moves are straight (to X, Y, Z) or arcs about an axis: X, Y, Z is a point on it, i, j, k its direction, and "
        "a\n"
        "positive angle turns the machine clockwise as seen from the tip of that direction. In CSV the columns i to\n"
        "RotationAngle are empty for straight moves, and numbers have all their digits.\n"
        "If one plan of a tour is refused, none is printed.");
    command.OnRun([options, &console] { Run(*options, console); });
}

} // namespace qmv40::cli
