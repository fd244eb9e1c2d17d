#include "tools/check/CheckReport.h"
#include "tools/cli/Commands.h"
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

/// A tour with findings is not exported unless it is forced, because the machine would execute it.
void RequireSound(const check::CheckedTour& tour, bool force, const text::Console& console) {
    if (tour.Findings() == 0) return;
    check::PrintCheckedTour(tour, {}, false, {console.err, console.err});
    if (force) return;
    console.err << "Nothing was written (--force writes it all the same).\n";
    throw CommandEnded{exitFindings};
}

std::string ContentOf(const std::vector<motion::Step>& program, const std::string& format,
                      const motion::ExportOptions& writing) {
    if (format == "gcode") return GcodeText(program, writing);
    if (format == "dmis") return DmisText(program, writing);
    return format == "ippdme" ? IppDmeText(program, writing) : PointsText(program, writing);
}

void Write(const ExportCommandOptions& options, const motion::ExportOptions& writing, const std::string& content,
           const text::Console& console) {
    const std::string heading = options.IsPoints() ? PointsHeading(writing) : "";
    if (!options.output.empty()) {
        text::WriteOutput(options.output, heading + content,
                          text::KindMarked("an export of this tool", motion::exportMark));
        console.err << "Written to " << options.output << ".\n";
    } else if (!options.json) {
        console.err << heading;
        console.out << content;
    }
}

void Run(const ExportCommandOptions& options, const text::Console& console) {
    RequireComplete(options.selection, "export");
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const model::HeadModel head = ReadHead(options.selection.geometry, console);
    const double safeHeight = SafeHeight(options, head);
    const std::vector<plans::Plan> plans = SelectedPlans(options.selection);
    RequireSound(check::CheckTour(plans, head, {}), options.selection.geometry.force, console);

    const std::vector<motion::Step> program = motion::ProgramOf(plans, {safeHeight, options.lift, !options.IsPoints()});
    motion::ExportOptions writing = options.writing;
    writing.arcs = options.arcs == "native" ? motion::Arcs::Native : motion::Arcs::Chords;
    const motion::Origin origin{
        plans, options.selection.geometry.file, options.settings, head.PoleSphere(), safeHeight, options.lift};
    writing.heading = motion::HeadingOf(program, origin, writing);
    const std::string content = ContentOf(program, options.format, writing);
    Write(options, writing, content, console);
    if (!options.json) return;
    text::PrintDocument("export",
                        {{"dialect", options.format},
                         {"file", options.output.empty() ? text::Json() : text::Json(options.output)},
                         {"heading", writing.heading},
                         {"pathLength", LengthOf(program)},
                         {"content", content}},
                        console.out);
}

void AddWriting(Command& command, ExportCommandOptions& options) {
    constexpr double smallestChord = 1e-6;
    constexpr double slowest = 1.0;
    AddNumberOption(command, "--chord", "MM", "The largest distance of a chord from its arc; 0.01 unless given",
                    options.writing.chord, smallestChord);
    AddNumberOption(command, "--feed", "MM/MIN", "How fast the machine moves; 300 unless given", options.writing.feed,
                    slowest);
    command.AddText("--arcs", options.arcs, "TEXT", "G-code: G2 and G3 where possible, or only chords")
        .AcceptOnly({"native", "chords"});
    AddNumberOption(command, "--safe-height", "Z",
                    "The height between plans and before the first one; the safe height of the head unless given",
                    options.safeHeight);
    AddNumberOption(command, "--lift", "MM", "Add this to every Z, for a rehearsal in the air", options.lift, 0.0);
    command.AddText("--output", options.output, "FILE", "Write here; without it to standard output");
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

void AddExportCommand(Command tool) {
    auto [command, options] = tool.AddCommand<ExportCommandOptions>(
        "export", "Write plans as a program for a machine's own controller", exportFooter, Run);
    AddPlanSelection(command, options.selection);
    command.AddText("--format", options.format, "TEXT", "The language of the program")
        .Require()
        .AcceptOnly({"points", "gcode", "dmis", "ippdme"});
    AddWriting(command, options);
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
