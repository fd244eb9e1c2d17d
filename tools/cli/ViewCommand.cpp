#include "cli/Allowances.h"
#include "cli/CheckReport.h"
#include "cli/Commands.h"
#include "cli/Drawing.h"
#include "cli/Failures.h"
#include "cli/Files.h"
#include "cli/Installation.h"
#include "cli/Markup.h"
#include "cli/Options.h"
#include "cli/PageTemplate.h"
#include "cli/PlanSelection.h"
#include "cli/Platform.h"
#include "cli/Text.h"
#include "cli/ViewDocument.h"

namespace {

struct ViewOptions : CommonOptions {
    PlanSelection selection;
    check::CheckOptions check;
    std::string output;       ///< file name of the page; empty: see WantsPage
    std::string drawing;      ///< file name; empty: none
    std::string pageTemplate; ///< file name; empty: the installed one
};

/// A file that is still to be written.
struct Outcome {
    std::string file;
    std::string content;
    const char* whatToDo;
};

constexpr const char* defaultPage = "view.html";

bool IsPageWanted(const ViewOptions& options) {
    return !options.output.empty() || (options.drawing.empty() && !options.json);
}

std::string TemplateFile(const ViewOptions& options) {
    if (!options.pageTemplate.empty()) return options.pageTemplate;
    return FindPageTemplate(PathOf(OwnFile()).parent_path());
}

std::vector<std::string> Drawings(const ViewedTour& view) {
    const std::vector<CheckedPlan>& plans = view.tour.plans;
    std::vector<std::string> drawings;
    for (std::size_t i = 0; i < plans.size(); ++i) {
        drawings.push_back(
            ThreeViews({view.name, view.title, plans[i], view.head, view.options.sizes, i + 1, plans.size()}));
    }
    return drawings;
}

std::string PageText(const std::string& templateFile, const std::string& content, const ViewedTour& view,
                     const std::vector<std::string>& drawings) {
    std::string figures;
    for (const std::string& drawing : drawings) figures += "<figure>\n" + drawing + "</figure>\n";
    const Filling fillings[] = {{"@TITLE@", MarkupText(view.title)},
                                {"@DOCUMENT@", EmbeddedDocument(ViewDocument(view))},
                                {"@DRAWINGS@", figures}};
    return FilledTemplate(templateFile, content, fillings);
}

/// One plan is drawn into the file, each of several into one of its own: plan-1.svg, plan-2.svg.
std::string DrawingFile(const std::string& fileName, std::size_t index, std::size_t count) {
    if (count == 1) return fileName;
    std::filesystem::path path = PathOf(fileName);
    const std::filesystem::path extension = path.extension();
    path.replace_extension();
    path += "-" + std::to_string(index + 1);
    path += extension;
    return Utf8Name(path);
}

std::vector<Outcome> DrawingFiles(const ViewOptions& options, const std::vector<std::string>& drawings) {
    if (options.drawing.empty()) return {};
    std::vector<Outcome> files;
    for (std::size_t i = 0; i < drawings.size(); ++i) {
        files.push_back({DrawingFile(options.drawing, i, drawings.size()), DrawingFileText(drawings[i]),
                         "print it on A4 at its own size (100 %), and its scale holds"});
    }
    return files;
}

ViewedTour CheckedView(const ViewOptions& options) {
    const check::HeadModel head = LoadModel(options.selection.geometry);
    CheckedTour tour = CheckTour(SelectedPlans(options.selection), head, options.check);
    const std::string name = Utf8Name(PathOf(options.selection.geometry).filename());
    return {name, name + ": " + StopsText(tour.plans), head, options.check, std::move(tour)};
}

void Run(const ViewOptions& options, const Console& console) {
    if (!options.selection.IsComplete()) throw UsageError{"view: give --from and --to, or --plan"};
    const SettingsOverride settings(options.settings);
    const std::string templateFile = IsPageWanted(options) ? TemplateFile(options) : "";
    const std::string pageTemplate = templateFile.empty() ? "" : ReadWholeFile(templateFile);
    const ViewedTour view = CheckedView(options);
    const bool isDrawn = !templateFile.empty() || !options.drawing.empty();
    const std::vector<std::string> drawings = isDrawn ? Drawings(view) : std::vector<std::string>();

    // Nothing is written before everything is there to be written.
    std::vector<Outcome> files = DrawingFiles(options, drawings);
    if (!templateFile.empty()) {
        files.push_back({options.output.empty() ? defaultPage : options.output,
                         PageText(templateFile, pageTemplate, view, drawings), "open it in a browser"});
    }
    for (const Outcome& file : files) WriteWholeFile(file.file, file.content);

    if (options.json) {
        PrintJson(ViewDocument(view), console.out);
    } else {
        PrintJudgement(view.tour, console);
    }
    for (const Outcome& file : files) console.err << "Written to " << file.file << ": " << file.whatToDo << ".\n";
    if (view.tour.Findings() != 0) throw CommandEnded{exitFindings};
}

void AddWhatToWrite(CLI::App& command, ViewOptions& options) {
    command
        .add_option("--output", options.output,
                    "Write the page here; view.html unless given, none with --svg or --json alone")
        ->type_name("FILE");
    command
        .add_option("--svg", options.drawing,
                    "Write a drawing of three views for paper here. Of a tour each plan has a sheet of its own: "
                    "plan.svg becomes plan-1.svg, plan-2.svg ...")
        ->type_name("FILE");
    command.add_option("--template", options.pageTemplate, "Fill this page instead of the installed one")
        ->type_name("FILE");
}

constexpr const char* viewFooter =
    "Examples:\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90 --to 15,-30 --output tour.html\n"
    "  qmv40 view --geometry head.ini --from 0,0 --to 45,90 --svg plan.svg\n"
    "  qmv40 view --geometry head.ini --plan plan.json --sphere-radius 6 --clearance 1\n"
    "\n"
    "The page shows head, levers, pole sphere and the way of each move in space, and what `qmv40 check` says of them.\n"
    "It is one file, needs no network, and can be sent to anybody. The drawing is a sheet of A4: top, front and side\n"
    "view to one scale, the moves numbered. With --json the document that the page shows is printed.\n"
    "What is found wrong is drawn as such; page and drawing are written all the same, and the exit code is 4.";

} // namespace

void AddViewCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("view", "Show plans in space, as a page for a browser or on paper");
    const auto options = std::make_shared<ViewOptions>();
    AddPlanSelection(command, options->selection);
    AddAllowances(command, options->check);
    AddWhatToWrite(command, *options);
    AddCommonOptions(command, *options);
    command.footer(viewFooter);
    command.callback([options, &console] { Run(*options, console); });
}
