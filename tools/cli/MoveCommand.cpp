#include "tools/check/HeadFile.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/cli/PlanSelection.h"
#include "tools/motion/Execution.h"
#include "tools/motion/Program.h"
#include "tools/plans/MoveTable.h"
#include "tools/plans/MovesJson.h"
#include "tools/plans/Tour.h"
#include "tools/text/Failures.h"
#include "tools/text/Json.h"
#include "tools/text/Numbers.h"

#include <algorithm>

namespace qmv40::cli {

namespace {

struct MoveOptions : CommonOptions {
    PlanSelection selection;
    bool csv = false;
};

std::string PointText(const model::Vector3& point) {
    constexpr int decimals = 4;
    return "X " + text::FixedText(point.x, decimals) + "  Y " + text::FixedText(point.y, decimals) + "  Z " +
           text::FixedText(point.z, decimals);
}

/// For people: the way from the end of each plan of a tour to the start of the next, and the length of the whole tour.
void PrintWays(const std::vector<plans::Plan>& plans, const model::HeadModel& head, const text::Console& console) {
    if (!std::ranges::all_of(plans, motion::CanRun)) return; // the table shows a number that is not finite
    const std::vector<motion::Step> program = motion::ProgramOf(plans, {.safeHeight = head.SafeHeight()});
    console.out << '\n' << console.Strong("The way between the plans, at the safe height (mm)") << '\n';
    bool isUp = true; // of the two steps before a plan: first up, then across
    for (const motion::Step& step : program) {
        if (step.move) continue;
        if (isUp) console.out << "  to plan " << step.plan << '\n';
        console.out << (isUp ? "    up to     " : "    across to ") << PointText(step.path.End()) << '\n';
        if (!isUp) console.out << "    down to its first move\n";
        isUp = !isUp;
    }
    console.out << "The whole tour is " << text::FixedText(LengthOf(program), 1) << " mm long.\n";
}

void Run(const MoveOptions& options, const text::Console& console) {
    if (!options.selection.IsComplete()) throw text::UsageError{"move: give --from and --to, or --tour"};
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const settings::GeometryFile geometry = ReadGeometryFile(options.selection.geometry, console);
    const std::vector<plans::Plan> plans = plans::PlanTour(geometry.Name(), SelectedPositions(options.selection));
    if (options.json) return text::PrintDocument("move", {{"plans", plans::PlansJson(plans)}}, console.out);
    if (options.csv) return plans::PrintMovesAsCsv(plans, console);
    plans::PrintMoveTables(plans, console);
    if (plans.size() > 1) PrintWays(plans, check::HeadModelOf(geometry.Numbers()), console);
}

constexpr const char* moveFooter =
    "Examples:\n"
    "  qmv40 move --geometry head.ini --from 0,0 --to 45,90\n"
    "  qmv40 move --geometry head.ini --from 0,0 --to 45,90 --to 90,-180 --to 0,0 --csv\n"
    "  qmv40 move --geometry head.ini --tour tour.csv\n"
    "\n"
    "Moves are straight or arcs about an axis. In CSV and JSON an arc has a point on its axis, the axis's "
    "direction\n"
    "and an angle: a positive angle turns the machine clockwise as seen from the tip of that direction.\n"
    "In CSV the columns are Plan, Move, Name, Kind, X, Y, Z (of a straight move's end, or of an arc's axis),\n"
    "i, j, k, RotationAngle (empty for straight moves), StartX to StartZ (empty for a plan's first move) and\n"
    "EndX to EndZ. Numbers have all their digits.\n"
    "If one plan of a tour is refused, none is printed.";

} // namespace

void AddMoveCommand(Command tool) {
    auto [command, options] =
        tool.AddCommand<MoveOptions>("move", "Plan the 19 moves that index the head", moveFooter, Run);
    AddGeometryOption(command, options.selection.geometry);
    AddPositions(command, options.selection);
    AddCommonOptions(command, options);
    command.AddFlag("--csv", options.csv, "Print one row a move, with a header line that names the columns")
        .Exclude("--json");
}

} // namespace qmv40::cli
