#include "tools/check/CheckReport.h"
#include "tools/cli/Commands.h"
#include "tools/cli/ExitCode.h"
#include "tools/cli/Options.h"
#include "tools/cli/PlanSelection.h"
#include "tools/motion/Export.h"
#include "tools/motion/ExportHeading.h"
#include "tools/text/Failures.h"
#include "tools/text/Json.h"
#include "tools/text/Numbers.h"
#include "tools/text/OutputFile.h"

namespace qmv40::cli {

namespace {

struct ExportCommandOptions : CommonOptions {
    PlanSelection selection;
    std::string format;
    std::string arcs = "native";
    std::string output; ///< empty: to standard output
    std::optional<double> safeHeight;
    double lift = 0.0;
    motion::ExportOptions writing{.chord = 0.01, .feed = 300.0, .heading = {}};

    bool IsPoints() const { return format == "points"; }
};

double SafeHeight(const ExportCommandOptions& options, const model::HeadModel& head) {
    if (!options.safeHeight) return head.SafeHeight();
    if (*options.safeHeight >= head.SafeHeight()) return *options.safeHeight;
    throw text::UsageError{"--safe-height: the machine moves freely from Z " + text::ExactText(head.SafeHeight()) +
                           " mm upwards"};
}

/// A tour with findings is not exported, because the machine would execute it.
void RequireSound(const check::CheckedTour& tour, bool force, const text::Console& console) {
    if (tour.Findings() == 0) return;
    check::PrintJudgement(tour, {}, {console.err, console.err});
    if (force) return;
    console.err << "Nothing was written (--force writes it all the same).\n";
    throw CommandEnded{exitFindings};
}

std::string ContentOf(const std::vector<motion::Step>& program, const ExportCommandOptions& options) {
    if (options.format == "gcode") return GcodeText(program, options.writing);
    if (options.format == "dmis") return DmisText(program, options.writing);
    if (options.format == "ippdme") return IppDmeText(program, options.writing);
    return PointsText(program, options.writing);
}

void Write(const ExportCommandOptions& options, const std::string& content, const text::Console& console) {
    const std::string heading = options.IsPoints() ? PointsHeading(options.writing) : "";
    if (!options.output.empty()) {
        text::WriteOutput(options.output, heading + content,
                          text::KindMarked("an export of this tool", motion::exportMark));
        console.err << "Written to " << options.output << ".\n";
    } else if (!options.json) {
        console.err << heading;
        console.out << content;
    }
}

text::Json DocumentOf(const ExportCommandOptions& options, const std::vector<motion::Step>& program,
                      const std::string& content) {
    return {{"dialect", options.format},
            {"file", options.output.empty() ? text::Json() : text::Json(options.output)},
            {"heading", options.writing.heading},
            {"pathLength", LengthOf(program)},
            {"content", content}};
}

void Run(ExportCommandOptions options, const text::Console& console) {
    RequireComplete(options.selection, "export");
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const model::HeadModel head = ReadHead(options.selection.geometry, console);
    const double safeHeight = SafeHeight(options, head);
    const std::vector<plans::Plan> plans = SelectedPlans(options.selection);
    RequireSound(check::CheckTour(plans, head, {}), options.selection.geometry.force, console);

    const std::vector<motion::Step> program = motion::ProgramOf(plans, {safeHeight, options.lift, !options.IsPoints()});
    options.writing.arcs = options.arcs == "native" ? motion::Arcs::Native : motion::Arcs::Chords;
    options.writing.heading = motion::HeadingOf(program, {.plans = plans,
                                                          .geometry = options.selection.geometry.file,
                                                          .settings = options.settings,
                                                          .poleSphere = head.PoleSphere(),
                                                          .safeHeight = safeHeight,
                                                          .lift = options.lift,
                                                          .chord = options.writing.chord,
                                                          .feed = options.writing.feed});
    const std::string content = ContentOf(program, options);
    Write(options, content, console);
    if (options.json) text::PrintDocument("export", DocumentOf(options, program, content), console.out);
}

/// An option for a number that is at least `least`.
void AddNumber(Command& command, const char* name, const char* unit, const char* description, double least,
               std::function<void(double)> take) {
    command.AddValue(name, unit, description, [least, take = std::move(take)](const std::string& value) -> std::string {
        const text::ParsedNumber number = text::ParseNumber(value);
        if (number.problem != nullptr) return "'" + value + "' " + number.problem;
        if (number.value < least) return "'" + value + "' is less than " + text::ExactText(least);
        take(number.value);
        return "";
    });
}

void AddWriting(Command& command, const std::shared_ptr<ExportCommandOptions>& options) {
    constexpr double smallestChord = 1e-6;
    constexpr double slowest = 1.0;
    constexpr double anywhere = -1e9;
    AddNumber(command, "--chord", "MM", "The largest distance of a chord from its arc; 0.01 unless given",
              smallestChord, [options](double value) { options->writing.chord = value; });
    AddNumber(command, "--feed", "MM/MIN", "How fast the machine moves; 300 unless given", slowest,
              [options](double value) { options->writing.feed = value; });
    command.AddText("--arcs", options->arcs, "TEXT", "G-code: G2 and G3 where possible, or only chords")
        .AcceptOnly({"native", "chords"});
    AddNumber(command, "--safe-height", "Z",
              "The height between plans and before the first one; the safe height of the head unless given", anywhere,
              [options](double value) { options->safeHeight = value; });
    AddNumber(command, "--lift", "MM", "Add this to every Z, for a rehearsal in the air", 0.0,
              [options](double value) { options->lift = value; });
    command.AddText("--output", options->output, "FILE", "Write here; without it to standard output");
}

constexpr const char* exportFooter =
    "Examples:\n"
    "  qmv40 export --geometry head.ini --from 0,0 --to 45,90 --format points --chord 0.005\n"
    "  qmv40 export --geometry head.ini --from 0,0 --to 45,90 --format gcode --lift 200 --output rehearsal.ngc\n"
    "  qmv40 export --geometry head.ini --tour tour.csv --format dmis --output tour.dmi\n"
    "\n"
    "Plans become a program that a machine can run: straight moves, arcs as chords or, in G-code, as G2 and G3\n"
    "where their axis is one of the machine's. In a tour the way between plans goes up, across and down at the\n"
    "safe height. points is CSV with the columns Plan, Move, Name, X, Y, Z; Move 0 is the way to a plan's start.\n"
    "Each plan is checked first: with findings nothing is written unless --force is given; the exit code is 4.\n"
    "Positions are machine positions, with no tip offset in force: each program switches the offset off, or stops\n"
    "until a person has confirmed it. docs/arcs.md says what each dialect assumes.";

} // namespace

void AddExportCommand(Command tool, const text::Console& console) {
    Command command = tool.AddCommand("export", "Write plans as a program for a machine's own controller");
    const auto options = std::make_shared<ExportCommandOptions>();
    AddPlanSelection(command, options->selection);
    command.AddText("--format", options->format, "TEXT", "The language of the program")
        .Require()
        .AcceptOnly({"points", "gcode", "dmis", "ippdme"});
    AddWriting(command, options);
    AddCommonOptions(command, *options);
    command.SetFooter(exportFooter);
    command.OnRun([options, &console] { Run(*options, console); });
}

} // namespace qmv40::cli
