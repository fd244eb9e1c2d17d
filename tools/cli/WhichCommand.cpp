#include "tools/check/AllPairs.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/model/TipPlace.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/MovesJson.h"
#include "tools/text/Finding.h"
#include "tools/text/Json.h"
#include "tools/text/Numbers.h"

#include <algorithm>

namespace qmv40::cli {

namespace {

struct WhichOptions : CommonOptions {
    GeometryOption geometry;
    model::Vector3 tip;
    model::Vector3 measured;
    bool isUnlocked = false;
};

/// mm. A head that was indexed is within hundredths of a millimetre of its place; the next place is millimetres away.
constexpr double indexedWithin = 0.5;

text::Json PositionsJson(const std::vector<model::HeadAngles>& positions) {
    text::Json list = text::Json::Array();
    for (const model::HeadAngles& each : positions) list.PushBack(plans::AnglesJson(each));
    return list;
}

text::Finding DidNotIndex(const model::MeasuredAngles& found) {
    return {.name = "did-not-index",
            .severity = text::Severity::Fault,
            .sentence = "The head did not index: it stands at none of its positions, or the tip is another one.",
            .remedy = "Look at the head. If it stands in a position, measure the tip again with `qmv40 geometry`.",
            .place = "",
            .amount = text::FixedText(found.offPlace, 4) + " mm"};
}

std::string ListOf(const std::vector<model::HeadAngles>& positions) {
    constexpr std::size_t most = 4;
    std::string text;
    for (std::size_t i = 0; i < std::min(most, positions.size()); ++i) {
        text += (i == 0 ? "" : "; ") + plans::HeadAnglesText(positions[i]);
    }
    return positions.size() > most ? text + " and " + std::to_string(positions.size() - most) + " more" : text;
}

text::Finding OnePlace(const model::MeasuredAngles& found) {
    return {.name = "several-positions",
            .severity = text::Severity::Note,
            .sentence = "The tip is in one place at several positions: " + ListOf(found.samePlace) + ".",
            .remedy = found.isBKnown ? "Only the head's own scale tells them apart."
                                     : "Measure at another A, or with a tip that stands off the B axis.",
            .place = "",
            .amount = "",
            .details = {{"positions", PositionsJson(found.samePlace)}}};
}

std::vector<text::Finding> FindingsOf(const model::MeasuredAngles& found) {
    std::vector<text::Finding> findings;
    if (!(found.offPlace <= indexedWithin)) findings.push_back(DidNotIndex(found));
    if (found.samePlace.size() > 1) findings.push_back(OnePlace(found));
    return findings;
}

text::Json DocumentOf(const model::MeasuredAngles& found, const std::vector<text::Finding>& findings) {
    const auto b = [&](double value) { return found.isBKnown ? text::Json(value) : text::Json(); };
    return {{"A", found.angles.a},
            {"B", b(found.angles.b)},
            {"nearest", {{"A", found.nearest.a}, {"B", b(found.nearest.b)}}},
            {"offPlace", found.offPlace},
            {"findings", text::FindingsJson(findings)}};
}

void Print(const model::MeasuredAngles& found, const std::vector<text::Finding>& findings,
           const text::Console& console) {
    constexpr int decimals = 4;
    const bool isIndexed = found.offPlace <= indexedWithin;
    const std::string b = found.isBKnown ? ", B " + text::ExactText(found.nearest.b) : ", any B";
    console.out << console.Strong(isIndexed ? "The head stands at A " + text::ExactText(found.nearest.a) + b + " (deg)"
                                            : "The head did not index")
                << "\n  nearest position A " << text::ExactText(found.nearest.a) << b << " deg, "
                << text::FixedText(found.offPlace, decimals) << " mm off its place\n  measured A "
                << text::FixedText(found.angles.a, decimals);
    if (found.isBKnown) console.out << ", B " << text::FixedText(found.angles.b, decimals);
    console.out << " deg\n";
    text::PrintFindings(findings, console.out, console.colour);
}

void Run(const WhichOptions& options, const text::Console& console) {
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const model::HeadModel head = ReadHead(options.geometry, console);
    const auto measured = options.isUnlocked ? model::Measured::Unlocked : model::Measured::Locked;
    const std::vector<model::HeadAngles> positions = check::HeadPositions(0);
    const model::MeasuredAngles found = AnglesAt(head, options.measured, options.tip, measured, positions);
    const std::vector<text::Finding> findings = FindingsOf(found);
    if (options.json) {
        text::PrintDocument("which", DocumentOf(found, findings), console.out);
    } else {
        Print(found, findings, console);
    }
    const auto isFault = [](const text::Finding& finding) { return finding.severity == text::Severity::Fault; };
    if (std::ranges::any_of(findings, isFault)) throw CommandEnded{exitFindings};
}

constexpr const char* whichFooter =
    "Example:\n"
    "  qmv40 which --geometry head.ini --tip 0,0,-180 --measured 285.221,-178.25,-527.721\n"
    "\n"
    "The answer is the nearest index position, the distance of the measured place from it, and the angles\n"
    "that fit best. When the distance is more than 0.5 mm, the head did not index: exit code 4.\n"
    "Several positions can have one place: at A = 0 a straight stylus has the same place at every B, and\n"
    "B = 180 has that of B = -180. The answer then lists them.";

} // namespace

void AddWhichCommand(Command tool) {
    auto [command, options] = tool.AddCommand<WhichOptions>(
        "which", "Compute A and B of the head from a measured pole sphere", whichFooter, Run);
    AddGeometryOption(command, options.geometry);
    AddTipOption(command, options.tip);
    AddPointOption(command, "--measured", "Centre of the pole sphere as measured without a tip in force",
                   options.measured)
        .Require();
    command.AddFlag("--unlocked", options.isUnlocked, "It was measured with the head unlocked, as for a capture");
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
