#include "tools/check/CheckReport.h"
#include "tools/cli/AssumptionOptions.h"
#include "tools/cli/Commands.h"
#include "tools/cli/GeometryRecord.h"
#include "tools/cli/Options.h"
#include "tools/cli/PlanSelection.h"
#include "tools/cli/StopQuestion.h"
#include "tools/recovery/RecoveryReport.h"
#include "tools/report/CapturePicture.h"
#include "tools/report/DiagnosisReport.h"
#include "tools/settings/Installation.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"
#include "tools/text/Finding.h"
#include "tools/text/Text.h"
#include "tools/view/Drawing.h"
#include "tools/view/Markup.h"
#include "tools/view/PageTemplate.h"
#include "tools/view/ViewDocument.h"

namespace qmv40::cli {

namespace {

struct ViewOptions : CommonOptions {
    PlanSelection selection;
    AssumptionOptions assumptions;
    CaptureOptions capture;   ///< that the geometry was computed from; its files may be empty
    std::string output;       ///< file name of the page; empty: see IsPageWanted
    std::string drawing;      ///< file name; empty: none
    std::string pageTemplate; ///< file name; empty: the installed one
    bool isStopped = false;   ///< show the ways out of a plan that was stopped
    StopQuestion stop;
};

/// A file to be written.
struct Outcome {
    std::string file;
    std::string content;
    const char* whatToDo;
    text::FileKind kind;
};

constexpr const char* noDrawings =
    "<p>A page of more than 10 plans has no drawings: <code>qmv40 view --svg plan.svg</code> makes them.</p>\n";
constexpr const char* defaultPage = "view.html";

bool IsPageWanted(const ViewOptions& options) {
    return !options.output.empty() || (options.drawing.empty() && !options.json);
}

std::string TemplateFile(const ViewOptions& options) {
    if (!options.pageTemplate.empty()) return options.pageTemplate;
    return view::FindPageTemplate(text::PathOf(settings::OwnFile()).parent_path());
}

std::vector<std::string> Drawings(const view::ViewedTour& view) {
    const std::vector<check::CheckedPlan>& plans = view.tour.plans;
    std::vector<std::string> drawings;
    drawings.reserve(plans.size());
    for (std::size_t i = 0; i < plans.size(); ++i) {
        drawings.push_back(
            view::ThreeViews({view.name, view.title, plans[i], view.head, view.options.sizes, i + 1, plans.size()}));
    }
    return drawings;
}

/// The residuals of the capture that the geometry was computed from, and what was found in it. Empty without a capture.
std::string CaptureFigure(const CaptureOptions& options, const text::Console& console) {
    if (options.aAxis.empty()) return "";
    text::Progress progress(console, "judging the capture", longStepsOfACapture);
    const captures::CaptureFiles files = ReadBothSets(options, progress);
    component::Calculator calculator;
    const JudgedCapture judged = Judged(options, files, calculator, progress);
    return "<section id=\"capture\" aria-label=\"Capture\">\n<h3>Capture: " +
           view::MarkupText(report::VerdictOf(judged.findings)) + "</h3>\n" +
           report::FindingsMarkup(report::FindingsOf(judged.findings, files, judged.Tip())) +
           report::CapturePicture({files, judged.findings}) + "</section>\n";
}

std::string PageText(const std::string& templateFile, const std::string& content, const view::ViewedTour& view,
                     const std::vector<std::string>& drawings, const std::string& capture) {
    std::string figures;
    for (const std::string& drawing : drawings) figures += "<figure>\n" + drawing + "</figure>\n";
    if (drawings.empty()) figures = noDrawings;
    figures += capture;
    const view::Filling fillings[] = {{"@TITLE@", view::MarkupText(view.title)},
                                      {"@DOCUMENT@", view::EmbeddedDocument(view::ViewDocument(view))},
                                      {"@DRAWINGS@", figures}};
    return view::MarkedPage(view::FilledTemplate(templateFile, content, fillings));
}

/// The file name of one drawing: for one plan the given name, for several plan-1.svg, plan-2.svg.
std::string DrawingFile(const std::string& fileName, std::size_t index, std::size_t count) {
    if (count == 1) return fileName;
    std::filesystem::path path = text::PathOf(fileName);
    const std::filesystem::path extension = path.extension();
    path.replace_extension();
    path += "-" + std::to_string(index + 1);
    path += extension;
    return text::Utf8Name(path);
}

std::vector<Outcome> DrawingFiles(const ViewOptions& options, const std::vector<std::string>& drawings) {
    if (options.drawing.empty()) return {};
    std::vector<Outcome> files;
    files.reserve(drawings.size());
    for (std::size_t i = 0; i < drawings.size(); ++i) {
        files.push_back({DrawingFile(options.drawing, i, drawings.size()), view::DrawingFileText(drawings[i]),
                         "print it on A4 at its own size (100 %), and its scale holds", view::DrawingKind()});
    }
    return files;
}

/// Both ways out of a stopped plan; when its state is not known, the plan itself.
view::ViewedTour RecoveredView(const ViewOptions& options, const model::HeadModel& head,
                               const check::CheckOptions& checked, const text::Console& console) {
    const PlanSelection& selection = options.selection;
    if (selection.targets.size() != 1) throw text::UsageError{"view --recover: give --from and one --to"};
    const recovery::Plans plans = recovery::PlansFor(selection.geometry.file, *selection.from, selection.targets[0]);
    const recovery::StoppedPlan plan(head, plans);
    const recovery::Question question = QuestionAbout(options.stop, plan, checked, console);
    const recovery::Answered answered{plan, question, plan.Answer(question)};
    const recovery::State state = answered.recovery.stop.state;
    console.err << text::Wrapped(std::string("State: ") + NameOf(state) + ". ", recovery::Why(answered));
    check::CheckedTour shown = recovery::ShownWays(plan, question, answered.recovery);
    const std::string name = text::Utf8Name(text::PathOf(selection.geometry.file).filename());
    const std::string title = state == recovery::State::Unknown
                                  ? name + ": stopped, state unknown. Shown is the plan"
                                  : name + ": stopped, " + NameOf(state) + ". 1 finish, 2 back out";
    return {name, title, head, checked, std::move(shown)};
}

view::ViewedTour CheckedView(const ViewOptions& options, const text::Console& console) {
    const model::HeadModel head = ReadHead(options.selection.geometry, console);
    const check::CheckOptions checked = options.assumptions.Read();
    if (options.isStopped) return RecoveredView(options, head, checked, console);
    check::CheckedTour tour = check::CheckTour(SelectedPlans(options.selection), head, checked);
    const std::string name = text::Utf8Name(text::PathOf(options.selection.geometry.file).filename());
    return {name, view::TitleText(name, tour.plans), head, checked, std::move(tour)};
}

void Run(const ViewOptions& options, const text::Console& console) {
    RequireComplete(options.selection, "view");
    [[maybe_unused]] const SettingsInUse settings(options, console);
    if (!IsPageWanted(options) && !options.capture.aAxis.empty()) {
        throw text::UsageError{"view: --a-axis and --b-axis are shown in the page: give --output"};
    }
    const std::string templateFile = IsPageWanted(options) ? TemplateFile(options) : "";
    const std::string pageTemplate = templateFile.empty() ? "" : text::ReadWholeFile(templateFile);
    const view::ViewedTour view = CheckedView(options, console);
    const bool isShort = view.tour.plans.size() <= view::mostPlansInFull;
    const bool isDrawn = (!templateFile.empty() && isShort) || !options.drawing.empty();
    const std::vector<std::string> drawings = isDrawn ? Drawings(view) : std::vector<std::string>();

    // Everything is made before anything is written.
    std::vector<Outcome> files = DrawingFiles(options, drawings);
    if (!templateFile.empty()) {
        files.push_back({options.output.empty() ? defaultPage : options.output,
                         PageText(templateFile, pageTemplate, view, isShort ? drawings : std::vector<std::string>(),
                                  CaptureFigure(options.capture, console)),
                         "open it in a browser", view::PageKind()});
    }
    for (const Outcome& file : files) text::RequireNewOrOfKind(file.file, file.kind);
    for (const Outcome& file : files) text::WriteOutput(file.file, file.content, file.kind);

    if (options.json) {
        text::PrintDocument("view", view::ViewDocument(view), console.out);
    } else {
        check::PrintCheckedTour(view.tour, view.options, false, console);
    }
    for (const Outcome& file : files) console.err << "Written to " << file.file << ": " << file.whatToDo << ".\n";
    if (view.tour.Findings() != 0) throw CommandEnded{exitFindings};
}

void AddWhatToWrite(Command& command, ViewOptions& options) {
    command.AddText("--output", options.output, "FILE",
                    "Write the page here; view.html unless given, none with --svg or --json alone");
    command.AddText("--svg", options.drawing, "FILE",
                    "Write a drawing of three views for paper here. Of a tour each plan has a sheet of its own: "
                    "plan.svg becomes plan-1.svg, plan-2.svg ...");
    Option standing = AddStopQuestion(command, options.stop);
    command
        .AddFlag("--recover", options.isStopped,
                 "Show where a stopped plan left the head, and both ways out, as `qmv40 recover` finds them")
        .Need("--standing")
        .Exclude("--tour")
        .Exclude("--plan");
    standing.Need("--recover");
    command.AddText("--template", options.pageTemplate, "FILE", "Fill this page instead of the installed one");
}

constexpr const char* viewFooter =
    "Examples:\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90 --to 15,-30 --output tour.html\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90 --svg plan.svg\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90 --recover --standing 430.5,-195.6,-643.5 --during 10\n"
    "  qmv40 view --geometry head.ini --plan plan.json --sphere-radius 6 --clearance 1\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90 --a-axis a-axis.csv --b-axis b-axis.csv\n"
    "\n"
    "The page shows head, levers, pole sphere, obstacles and the way of each move in space, and what `qmv40 check` "
    "says.\n"
    "It is one file, needs no network, and can be sent to anybody. The drawing is a sheet of A4: top, front and side\n"
    "view to one scale, the moves numbered. With --json the document that the page shows is printed.\n"
    "With --a-axis and --b-axis, the capture that the geometry was computed from, the page shows the residual of each\n"
    "point, up to 1000 times as long, and what `qmv40 geometry` finds.\n"
    "Moves with findings are marked. Page and drawing are written in any case; with findings the exit code is 4.";

} // namespace

void AddViewCommand(Command tool) {
    auto [command, options] = tool.AddCommand<ViewOptions>(
        "view", "Show plans in space, as a page for a browser or on paper", viewFooter, Run);
    AddPlanSelection(command, options.selection);
    AddAssumptionOptions(command, options.assumptions);
    AddWhatToWrite(command, options);
    AddCaptureFiles(command, options.capture, false);
    AddUnits(command, options.capture.unit, "What the capture is in");
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
