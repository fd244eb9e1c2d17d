#include "tools/cli/PlanSelection.h"

#include "tools/plans/PlanFile.h"
#include "tools/plans/Tour.h"
#include "tools/text/Csv.h"
#include "tools/text/Failures.h"

namespace qmv40::cli {

namespace {

std::vector<plans::Plan> PlansOfFile(const PlanSelection& selection) {
    std::vector<plans::Plan> read = plans::ReadPlans(selection.file);
    if (selection.from) read.front().from = *selection.from;
    if (selection.targets.empty()) return read;
    if (selection.targets.size() != read.size()) {
        throw text::UsageError{"--plan: " + selection.file + " holds " + std::to_string(read.size()) +
                               " plans: give --to as many times, or not at all"};
    }
    for (std::size_t i = 0; i < read.size(); ++i) read[i].to = selection.targets[i];
    return read;
}

} // namespace

void RequireComplete(const PlanSelection& selection, const std::string& command) {
    if (!selection.IsComplete()) throw text::UsageError{command + ": give --from and --to, or --tour, or --plan"};
}

void AddPositions(Command& command, PlanSelection& selection) {
    AddAnglesOption(command, "--from", selection.from);
    AddToOption(command, selection.targets);
    command.AddText("--tour", selection.tour, "FILE",
                    "CSV with the columns A, B: the positions of a tour. Without --from the first one is the present "
                    "position of the head");
}

std::vector<model::HeadAngles> SelectedPositions(const PlanSelection& selection) {
    std::vector<model::HeadAngles> positions;
    if (selection.from) positions.push_back(*selection.from);
    positions.insert(positions.end(), selection.targets.begin(), selection.targets.end());
    if (!selection.tour.empty()) {
        for (const text::NumberRow& row : text::ReadNumberTable(selection.tour, text::angleColumns).rows) {
            positions.push_back({row.values[0], row.values[1]});
        }
    }
    if (positions.size() < 2) throw text::UsageError{"--tour: give --from, or a tour of two positions at least"};
    return positions;
}

void AddPlanSelection(Command& command, PlanSelection& selection) {
    AddGeometryOption(command, selection.geometry);
    AddPositions(command, selection);
    command.AddText("--plan", selection.file, "FILE",
                    "Take the plans of this file, as `qmv40 move --json` prints them, edited or not. --from and --to "
                    "then replace its start and its targets");
}

std::vector<plans::Plan> SelectedPlans(const PlanSelection& selection) {
    if (!selection.file.empty()) return PlansOfFile(selection);
    return plans::PlanTour(selection.geometry.file, SelectedPositions(selection));
}

} // namespace qmv40::cli
