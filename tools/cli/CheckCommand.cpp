#include "check/HeadFile.h"
#include "cli/AllPairs.h"
#include "cli/Calculator.h"
#include "cli/CheckReport.h"
#include "cli/Commands.h"
#include "cli/Numbers.h"
#include "cli/Options.h"
#include "cli/PlanFile.h"
#include "cli/Platform.h"
#include "cli/Text.h"

#include <array>

namespace {

struct CheckCommandOptions : CommonOptions {
    std::string geometry;
    HeadAngles from{};
    bool hasFrom = false;
    std::vector<HeadAngles> targets;
    std::string plan; ///< file name; empty: the component plans
    bool all = false;
    bool reachable = false;
    check::CheckOptions check;
};

void RequireSomethingToCheck(const CheckCommandOptions& options) {
    if (options.all || !options.plan.empty()) return;
    if (options.hasFrom && !options.targets.empty()) return;
    throw UsageError{"check: give --from and --to, or --plan, or --all"};
}

std::vector<check::PlanToCheck> PlansOfComponent(const CheckCommandOptions& options) {
    Calculator calculator;
    calculator.LoadHeadGeometry(options.geometry);
    calculator.SetCurrentHeadPosition(options.from);
    std::vector<check::PlanToCheck> plans;
    for (const HeadAngles& target : options.targets) {
        const HeadAngles from = calculator.CurrentHeadPosition();
        const RequiredMoves moves = calculator.CalculateMove(target);
        plans.push_back({from, calculator.CurrentHeadPosition(), check::MovesInOrder(moves)});
    }
    return plans;
}

/// The plans of the file, held against what the command line asks for where it does.
std::vector<check::PlanToCheck> PlansOfFile(const CheckCommandOptions& options) {
    std::vector<check::PlanToCheck> plans = ReadPlans(options.plan);
    if (options.hasFrom) plans.front().from = options.from;
    if (options.targets.empty()) return plans;
    if (options.targets.size() != plans.size()) {
        throw UsageError{"check: " + options.plan + " holds " + std::to_string(plans.size()) + " plans: give --to " +
                         "as many times, or not at all"};
    }
    for (std::size_t i = 0; i < plans.size(); ++i) plans[i].to = options.targets[i];
    return plans;
}

/// The plans one after the other: each begins where the machine stands after the one before.
CheckedTour CheckTour(std::vector<check::PlanToCheck> plans, const check::HeadModel& head,
                      const check::CheckOptions& options) {
    CheckedTour tour;
    for (check::PlanToCheck& plan : plans) {
        check::PlanReport report = tour.plans.empty()
                                       ? check::CheckPlan(head, options, plan)
                                       : check::CheckNextPlan(head, options, plan, tour.plans.back().report);
        tour.figures.Take(plan, report);
        tour.plans.push_back({std::move(plan), std::move(report)});
    }
    return tour;
}

/// How many findings there were.
std::size_t RunAll(const CheckCommandOptions& options, const check::HeadModel& head, const Console& console) {
    const int leastA = options.reachable ? 0 : -90;
    const AllPairs all = CheckAllPairs(options.geometry, head, options.check, HeadPositions(leastA), console);
    if (options.json) {
        PrintJson(AllPairsJson(all, options.check), console.out);
    } else {
        PrintAllPairs(all, console);
    }
    return all.findings;
}

std::size_t RunTour(const CheckCommandOptions& options, const check::HeadModel& head, const Console& console) {
    auto plans = options.plan.empty() ? PlansOfComponent(options) : PlansOfFile(options);
    const CheckedTour tour = CheckTour(std::move(plans), head, options.check);
    if (options.json) {
        PrintJson(CheckedTourJson(tour, head, options.check), console.out);
    } else {
        PrintCheckedTour(tour, console);
    }
    return tour.Findings();
}

check::HeadModel LoadModel(const std::string& geometryFile) {
    // Complains about a file that is missing or lacks a value, in the component's words.
    Calculator().LoadHeadGeometry(geometryFile);
    const std::wstring name = FileNameForComponent(std::filesystem::absolute(PathOf(geometryFile)));
    return CatchingCodes("ReadHeadModel", [&] { return check::ReadHeadModel(name.c_str()); });
}

void Run(const CheckCommandOptions& options, const Console& console) {
    RequireSomethingToCheck(options);
    const SettingsOverride settings(options.settings);
    const check::HeadModel head = LoadModel(options.geometry);
    const std::size_t findings = options.all ? RunAll(options, head, console) : RunTour(options, head, console);
    if (findings != 0) throw CommandEnded{exitFindings};
}

void AddLengthOption(CLI::App& command, const char* name, double& length, const std::string& meaning) {
    command
        .add_option_function<std::string>(
            name,
            [name, &length](const std::string& text) {
                const ParsedNumber number = ParseNumber(text);
                if (number.problem != nullptr || number.value < 0.0) {
                    throw CLI::ValidationError(name, "'" + text + "' is not a length of 0 mm or more");
                }
                length = number.value;
            },
            meaning)
        ->type_name("MM");
}

void AddTravelOption(CLI::App& command, const char* name, check::TravelLimits& limits) {
    command
        .add_option_function<std::string>(
            name,
            [name, &limits](const std::string& text) {
                const auto ends = ParseNumberPair(text);
                if (!ends || ends->first > ends->second) {
                    throw CLI::ValidationError(name, "'" + text + "' is not a smaller and a larger number");
                }
                limits = {ends->first, ends->second};
            },
            "Between which coordinates the machine can move, mm; without it any")
        ->type_name("MIN,MAX");
}

void AddWhatToCheck(CLI::App& command, CheckCommandOptions& options) {
    AddFromOption(command, options.from);
    AddToOption(command, options.targets);
    command.get_option("--from")->required(false);
    command.get_option("--to")->required(false);
    command
        .add_option("--plan", options.plan,
                    "Check the plans of this file, as `qmv40 move --json` prints them, edited or not. With --from and "
                    "--to: whether they do what is asked for")
        ->type_name("FILE");
    command.add_flag("--all", options.all, "Check every pair of positions, A -90 to 90 and B -180 to 180 by 15")
        ->excludes("--from")
        ->excludes("--to")
        ->excludes("--plan");
    command.add_flag("--reachable", options.reachable, "Of all pairs, those within the head's reach: A 0 to 90")
        ->needs("--all");
}

void AddAllowances(CLI::App& command, check::CheckOptions& options) {
    AddLengthOption(command, "--sphere-radius", options.sizes.poleSphereRadius,
                    "Radius of the pole sphere. 5 mm unless given: half of the 10 mm from which the peg is approached");
    AddLengthOption(command, "--ball-radius", options.sizes.leverBallRadius,
                    "Radius of a lever's ball. 2.5 mm unless given: half of the 5 mm from which it is approached");
    AddLengthOption(command, "--clearance", options.smallestRoom, "Room that every move has to leave. 0 unless given");
    AddTravelOption(command, "--x-travel", options.travel[0]);
    AddTravelOption(command, "--y-travel", options.travel[1]);
    AddTravelOption(command, "--z-travel", options.travel[2]);
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
    AddGeometryOption(command, options->geometry);
    AddWhatToCheck(command, *options);
    AddAllowances(command, options->check);
    AddCommonOptions(command, *options);
    command.footer(checkFooter);
    command.callback([options, &command, &console] {
        options->hasFrom = command.count("--from") != 0;
        Run(*options, console);
    });
}
