#include "tools/check/AllPairs.h"
#include "tools/check/CheckReport.h"
#include "tools/cli/AssumptionOptions.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/cli/PlanSelection.h"

namespace qmv40::cli {

namespace {

struct CheckCommandOptions : CommonOptions {
    PlanSelection selection;
    bool all = false;
    bool reachable = false;
    AssumptionOptions assumptions;
};

/// Returns the number of findings.
std::size_t RunAll(const CheckCommandOptions& options, const check::CheckOptions& checked, const model::HeadModel& head,
                   const text::Console& console) {
    const int leastA = options.reachable ? 0 : -90;
    const check::AllPairs all =
        check::CheckAllPairs(options.selection.geometry.file, head, checked, check::HeadPositions(leastA), console);
    if (options.json) {
        text::PrintDocument("check", check::AllPairsJson(all, checked), console.out);
    } else {
        check::PrintAllPairs(all, checked, console);
    }
    return all.findings;
}

std::size_t RunTour(const CheckCommandOptions& options, const check::CheckOptions& checked,
                    const model::HeadModel& head, const text::Console& console) {
    const check::CheckedTour tour = check::CheckTour(SelectedPlans(options.selection), head, checked);
    if (options.json) {
        text::PrintDocument("check", check::CheckedTourJson(tour, head, checked), console.out);
    } else {
        check::PrintCheckedTour(tour, checked, true, console);
    }
    return tour.Findings();
}

void Run(const CheckCommandOptions& options, const text::Console& console) {
    if (!options.all && !options.selection.IsComplete())
        throw text::UsageError{"check: give --from and --to, or --tour, or --plan, or --all"};
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const check::CheckOptions checked = options.assumptions.Read();
    const model::HeadModel head = ReadHead(options.selection.geometry, console);
    const std::size_t findings =
        options.all ? RunAll(options, checked, head, console) : RunTour(options, checked, head, console);
    if (findings != 0) throw CommandEnded{exitFindings};
}

void AddWhatToCheck(Command& command, CheckCommandOptions& options) {
    AddPlanSelection(command, options.selection);
    command.AddFlag("--all", options.all, "Check every pair of positions, A -90 to 90 and B -180 to 180 by 15")
        .Exclude("--from")
        .Exclude("--to")
        .Exclude("--tour")
        .Exclude("--plan");
    command.AddFlag("--reachable", options.reachable, "Of all pairs, those within the head's reach: A 0 to 90")
        .Need("--all");
}

constexpr const char* checkFooter =
    "Examples:\n"
    "  qmv40 check --geometry head.ini --from 0,0 --to 45,90\n"
    "  qmv40 check --geometry head.ini --all --clearance 1 --z-travel -800,0\n"
    "  qmv40 move --geometry head.ini --from 0,0 --to 45,90 --json > plan.json\n"
    "  qmv40 check --geometry head.ini --plan plan.json --from 0,0 --to 45,90\n"
    "  qmv40 check --geometry head.ini --all --reachable --stylus 120 --table -900 --obstacles fixture.stl\n"
    "\n"
    "The moves are run on a model of machine and head that knows nothing of how plans are made: lock lever, peg,\n"
    "A and B. Each move is compared with its purpose, and its clearance is computed over its whole path:\n"
    "from head centre and drive cup to the pole sphere, from the machine's position to both levers. What a move must\n"
    "touch is left out of its clearance. Findings have names, which docs/qmv40.md lists. If there is a finding, the "
    "exit\n"
    "code is 4.\n"
    "The parts of the head are checked against the table and the obstacles. The stylus is also checked against the\n"
    "pole sphere and its stem; so are body and joint when their sizes are given. The report says with which sizes.\n"
    "With --all the component refuses the pairs with A below 0; they are counted.";

} // namespace

void AddCheckCommand(Command tool) {
    auto [command, options] = tool.AddCommand<CheckCommandOptions>(
        "check", "Run plans on a model of machine and head, and judge them", checkFooter, Run);
    AddWhatToCheck(command, options);
    AddAssumptionOptions(command, options.assumptions);
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
