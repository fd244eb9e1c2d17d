#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/MoveTable.h"
#include "cli/Options.h"
#include "cli/PlanSelection.h"
#include "cli/Platform.h"

namespace {

struct MoveOptions : CommonOptions {
    std::string geometry;
    HeadAngles from{};
    std::vector<HeadAngles> targets;
    bool csv = false;
};

Json PlansJson(const std::vector<Plan>& plans) {
    Json documents = Json::array();
    for (const Plan& plan : plans) {
        documents.push_back(
            {{"from", AnglesJson(plan.from)}, {"to", AnglesJson(plan.to)}, {"moves", MovesJson(plan.moves)}});
    }
    return {{"plans", documents}};
}

void Run(const MoveOptions& options, const Console& console) {
    const SettingsOverride settings(options.settings);
    const std::vector<Plan> plans = PlanTour(options.geometry, options.from, options.targets);
    if (options.json) return PrintJson(PlansJson(plans), console.out);
    if (options.csv) return PrintMovesAsCsv(plans, console);
    PrintMoveTables(plans, console);
}

} // namespace

void AddMoveCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("move", "Plan the 19 moves that index the head");
    const auto options = std::make_shared<MoveOptions>();
    AddGeometryOption(command, options->geometry);
    AddFromOption(command, options->from);
    AddToOption(command, options->targets);
    AddCommonOptions(command, *options);
    command.add_flag("--csv", options->csv, "Print one row a move: Plan,Move,Name,Kind,X,Y,Z,i,j,k,RotationAngle")
        ->excludes("--json");
    command.footer(
        "Examples:\n"
        "  qmv40 move --geometry head.ini --from 0,0 --to 45,90\n"
        "  qmv40 move --geometry head.ini --from 0,0 --to 45,90 --to 90,-180 --to 0,0 --csv\n"
        "\n"
        "Moves are straight (to X, Y, Z) or arcs about an axis: X, Y, Z is a point on it, i, j, k its direction, and "
        "a\n"
        "positive angle turns the machine clockwise as seen from the tip of that direction. In CSV the columns i to\n"
        "RotationAngle are empty for straight moves, and numbers have all their digits.\n"
        "If one plan of a tour is refused, none is printed.");
    command.callback([options, &console] { Run(*options, console); });
}
