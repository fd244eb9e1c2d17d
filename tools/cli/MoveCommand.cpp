#include "cli/Calculator.h"
#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/MoveTable.h"
#include "cli/Options.h"
#include "cli/Platform.h"

namespace {

struct MoveOptions : CommonOptions {
    std::string geometry;
    HeadAngles from{};
    std::vector<HeadAngles> targets;
    bool csv = false;
};

/// All plans or none: a tour that stops half-way is no tour.
std::vector<Plan> PlanTour(const MoveOptions& options) {
    Calculator calculator;
    calculator.LoadHeadGeometry(options.geometry);
    calculator.SetCurrentHeadPosition(options.from);
    std::vector<Plan> plans;
    for (const HeadAngles& target : options.targets) {
        const HeadAngles from = calculator.CurrentHeadPosition();
        const RequiredMoves moves = calculator.CalculateMove(target);
        plans.push_back({from, calculator.CurrentHeadPosition(), moves});
    }
    return plans;
}

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
    const std::vector<Plan> plans = PlanTour(options);
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
