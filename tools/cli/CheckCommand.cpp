#include "cli/AllPairs.h"
#include "cli/Allowances.h"
#include "cli/CheckReport.h"
#include "cli/Commands.h"
#include "cli/Options.h"
#include "cli/PlanSelection.h"
#include "cli/Platform.h"

namespace {

struct CheckCommandOptions : CommonOptions {
    PlanSelection selection;
    bool all = false;
    bool reachable = false;
    check::CheckOptions check;
};

void RequireSomethingToCheck(const CheckCommandOptions& options) {
    if (options.all || options.selection.IsComplete()) return;
    throw UsageError{"check: give --from and --to, or --plan, or --all"};
}

/// How many findings there were.
std::size_t RunAll(const CheckCommandOptions& options, const check::HeadModel& head, const Console& console) {
    const int leastA = options.reachable ? 0 : -90;
    const AllPairs all = CheckAllPairs(options.selection.geometry, head, options.check, HeadPositions(leastA), console);
    if (options.json) {
        PrintJson(AllPairsJson(all, options.check), console.out);
    } else {
        PrintAllPairs(all, console);
    }
    return all.findings;
}

std::size_t RunTour(const CheckCommandOptions& options, const check::HeadModel& head, const Console& console) {
    const CheckedTour tour = CheckTour(SelectedPlans(options.selection), head, options.check);
    if (options.json) {
        PrintJson(CheckedTourJson(tour, head, options.check), console.out);
    } else {
        PrintCheckedTour(tour, console);
    }
    return tour.Findings();
}

void Run(const CheckCommandOptions& options, const Console& console) {
    RequireSomethingToCheck(options);
    const SettingsOverride settings(options.settings);
    const check::HeadModel head = LoadModel(options.selection.geometry);
    const std::size_t findings = options.all ? RunAll(options, head, console) : RunTour(options, head, console);
    if (findings != 0) throw CommandEnded{exitFindings};
}

void AddWhatToCheck(CLI::App& command, CheckCommandOptions& options) {
    AddPlanSelection(command, options.selection);
    command.add_flag("--all", options.all, "Check every pair of positions, A -90 to 90 and B -180 to 180 by 15")
        ->excludes("--from")
        ->excludes("--to")
        ->excludes("--plan");
    command.add_flag("--reachable", options.reachable, "Of all pairs, those within the head's reach: A 0 to 90")
        ->needs("--all");
}

constexpr const char* checkFooter =
    "Examples:\n"
    "  qmv40 check --geometry head.ini --from 0,0 --to 45,90\n"
    "  qmv40 check --geometry head.ini --all --clearance 1 --z-travel -800,0\n"
    "  qmv40 move --geometry head.ini --from 0,0 --to 45,90 --json > plan.json\n"
    "  qmv40 check --geometry head.ini --plan plan.json --from 0,0 --to 45,90\n"
    "\n"
    "The moves are run on a model of machine and head that knows nothing of how plans are made: lock lever, peg,\n"
    "A and B. Each move is held against what it is for, and the room that it leaves is measured over its whole way:\n"
    "from head centre and drive cup to the pole sphere, from the machine's position to both levers. What a move must\n"
    "touch is left out of its room. Findings have names, which docs/qmv40.md lists; with any the exit code is 4.\n"
    "With --all the component refuses the pairs with A below 0; they are counted.";

} // namespace

void AddCheckCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("check", "Run plans on a model of machine and head, and judge them");
    const auto options = std::make_shared<CheckCommandOptions>();
    AddWhatToCheck(command, *options);
    AddAllowances(command, options->check);
    AddCommonOptions(command, *options);
    command.footer(checkFooter);
    command.callback([options, &console] { Run(*options, console); });
}
