#include "interface/ErrorCodes.h"
#include "tools/cli/Commands.h"
#include "tools/cli/GeometryRecord.h"
#include "tools/cli/JudgedCapture.h"
#include "tools/cli/Options.h"
#include "tools/component/Calculator.h"
#include "tools/component/ComponentError.h"
#include "tools/diagnosis/SetJudgement.h"
#include "tools/model/Angles.h"
#include "tools/plans/PositionLine.h"
#include "tools/report/CapturePicture.h"
#include "tools/report/DiagnosisReport.h"
#include "tools/report/Fits.h"
#include "tools/text/Failures.h"
#include "tools/text/Json.h"
#include "tools/text/OutputFile.h"
#include "tools/text/Progress.h"

#include <cmath>

namespace qmv40::cli {

namespace {

struct GeometryOptions : CommonOptions {
    CaptureOptions capture;
    std::string output;     ///< empty: nothing is written
    std::string picture;    ///< file name; empty: none
    std::string record;     ///< file name; empty: none
    std::string headNumber; ///< for the record
    bool force = false;     ///< write a geometry with a fault too
};

/// A capture and its judgement, and the circles through its points.
struct GeometryReport : JudgedCapture {
    report::ReportedCircle aAxis;
    report::ReportedCircle bAxis;
};

/// The circle that the judgement fitted. Where it ended before the fit, the circle is fitted here.
report::ReportedCircle AxisFit(const JudgedCapture& judged, bool isOfASet, const model::Vector3& axis) {
    const auto& diagnosis = judged.diagnosis;
    diagnosis::fit::AxisCircle circle =
        diagnosis ? (isOfASet ? diagnosis->aCircle : diagnosis->bCircle)
                  : report::FitCircle(captures::PositionsOf(judged.capture.sets.Set(isOfASet)));
    const model::Vector3 normal = report::Facing(circle.normal, axis);
    return {std::move(circle), normal};
}

GeometryReport Report(JudgedCapture judged) {
    // The direction of the A axis, from the rotation about Z and the B of the A set
    const double azimuth = model::ToRadians(judged.head.rotationAroundZ + judged.capture.sets.Set(true).front().b);
    report::ReportedCircle aFit = AxisFit(judged, true, {-std::cos(azimuth), -std::sin(azimuth), 0.0});
    report::ReportedCircle bFit = AxisFit(judged, false, {0.0, 0.0, 1.0});
    return {std::move(judged), std::move(aFit), std::move(bFit)};
}

text::Json ReportJson(const GeometryReport& report, const captures::CaptureFiles& capture) {
    return {{"headCentre", text::PointJson(report.head.headCentre)},
            {"requiredRotationAroundZ", report.head.rotationAroundZ},
            {"safePosition", text::PointJson(report.head.safePosition)},
            {"fits", {{"aAxis", report.aAxis.Document()}, {"bAxis", report.bAxis.Document()}}},
            {"diagnostics", report.diagnosis ? report::DiagnosisJson(*report.diagnosis, capture)
                                             : report::FindingsJson(report.findings, capture, {})}};
}

void PrintFits(const GeometryReport& report, const text::Console& console) {
    const report::ReportedCircle& a = report.aAxis;
    const report::ReportedCircle& b = report.bAxis;
    report::FitRows rows({"A axis", "B axis"});
    rows.Add("points", "", {std::to_string(a.residuals.values.size()), std::to_string(b.residuals.values.size())});
    rows.Add("captured at", "deg",
             {"B " + text::ExactText(report.capture.sets.Set(true).front().b),
              "A " + text::ExactText(report.capture.sets.Set(false).front().a)});
    rows.AddPoint("centre", {a.circle.centre, b.circle.centre});
    rows.AddDirection("axis", {a.normal, b.normal});
    rows.Add("radius", "mm", {report::FitRows::Length(a.circle.radius), report::FitRows::Length(b.circle.radius)});
    rows.Add("arc covered", "deg",
             {report::FitRows::Angle(a.circle.arcCovered), report::FitRows::Angle(b.circle.arcCovered)});
    rows.Add("degrees of freedom", "",
             {std::to_string(a.circle.DegreesOfFreedom()), std::to_string(b.circle.DegreesOfFreedom())});
    rows.AddResiduals({&a.residuals, &b.residuals});
    rows.Print(console);
}

void PrintReport(const GeometryReport& report, const captures::CaptureFiles& capture, const text::Console& console) {
    report::PrintVerdict(report.findings, capture, report.Tip(), console);
    console.out << '\n'
                << console.Strong("Head centre (centre of the pole sphere)") << '\n'
                << plans::PositionLine(report.head.headCentre) << '\n'
                << console.Strong("Head turned about Z by") << "\n  "
                << report::FitRows::Angle(report.head.rotationAroundZ) << " deg\n"
                << console.Strong("Safe height, above the pole sphere and both levers") << "\n  Z "
                << report::FitRows::Length(report.head.safePosition.z) << " mm\n\n"
                << console.Strong("Circles through the points, brought to the locked position") << '\n';
    PrintFits(report, console);
    console.out << "  The RMS tells how well the points lie on a circle, not how well its centre is known.\n";
    if (!report.diagnosis) return;
    console.out << '\n';
    report::PrintDiagnosis(*report.diagnosis, capture, console);
}

/// The component refused the capture. When the angles or the points show the reason, it is printed beside the
/// component's message.
[[noreturn]] void Refuse(const component::ComponentError& error, const captures::CaptureFiles& capture, bool json,
                         const text::Console& console) {
    const captures::CapturedSets& sets = capture.sets;
    std::vector<diagnosis::Finding> findings;
    if (error.code == QMV_E_FIXED_AXIS_MOVED) findings = diagnosis::JudgeHeldAngles(sets);
    // When the points form no circle, each set is examined for the reason.
    const bool isOfPoints = error.code == QMV_E_GEOMETRY_IMPOSSIBLE;
    if (isOfPoints && sets.aCount > 0 && sets.aCount < sets.points.size()) findings = diagnosis::JudgeSets(sets);
    if (findings.empty()) throw error;
    if (json) {
        text::Json document = component::ErrorJson(error);
        document["diagnostics"] = report::FindingsJson(findings, capture, {});
        text::PrintDocument("geometry", document, console.out);
    } else {
        console.err << "qmv40: error " << component::CodeText(error.code) << " from " << error.source << ": "
                    << error.description << '\n';
        const std::vector<text::Finding> told = report::FindingsOf(findings, capture, {});
        text::PrintFindings(told, console.err);
    }
    throw CommandEnded{exitRefused};
}

JudgedCapture Compute(const GeometryOptions& options, const captures::CaptureFiles& capture,
                      component::Calculator& calculator, text::Progress& progress, const text::Console& console) {
    try {
        return Judged(options.capture, capture, calculator, progress);
    } catch (const component::ComponentError& error) {
        Refuse(error, capture, options.json, console);
    }
}

/// Nothing is computed before it is certain that every file may be written.
void RequireFiles(const GeometryOptions& options) {
    if (!options.output.empty()) text::RequireNewOrOfKind(options.output, settings::GeometryFileKind());
    if (!options.picture.empty()) text::RequireNewOrOfKind(options.picture, report::PictureKind());
    if (!options.record.empty()) text::RequireNewOrOfKind(options.record, report::RecordKind());
    if (!options.headNumber.empty() && options.record.empty()) {
        throw text::UsageError{"geometry: --head goes with --record"};
    }
}

/// Picture and record show what is wrong, so they are written whatever was found.
void WriteForPeople(const GeometryOptions& options, const GeometryReport& report, const captures::CaptureFiles& capture,
                    bool isWritten, const text::Console& console) {
    if (!options.picture.empty()) {
        text::WriteOutput(options.picture, report::PictureFileText({capture, report.findings}), report::PictureKind());
        console.err << "The residuals were drawn into " << options.picture << '\n';
    }
    if (!options.record.empty()) {
        const RecordedGeometry recorded{report, capture, options.headNumber, isWritten ? options.output : ""};
        text::WriteOutput(options.record, report::RecordPage(RecordOf(recorded)), report::RecordKind());
        console.err << "The record was written to " << options.record << ": print it on A4\n";
    }
}

void Run(const GeometryOptions& options, const text::Console& console) {
    RequireFiles(options);
    [[maybe_unused]] const SettingsInUse settings(options, console);
    std::optional<text::Progress> progress(std::in_place, console, "computing the geometry", longStepsOfACapture);
    const captures::CaptureFiles capture = ReadBothSets(options.capture, *progress);
    component::Calculator calculator;
    const GeometryReport report = Report(Compute(options, capture, calculator, *progress, console));
    progress.reset();
    const bool isRefused = Has(report.findings, diagnosis::Severity::Fault) && !options.force;
    const bool isWritten = !options.output.empty() && !isRefused;
    if (isWritten) calculator.SaveHeadGeometry(options.output);
    WriteForPeople(options, report, capture, isWritten, console);

    if (options.json) {
        text::PrintDocument("geometry", ReportJson(report, capture), console.out);
    } else {
        PrintReport(report, capture, console);
    }
    if (isWritten) console.err << "The geometry was written to " << options.output << '\n';
    if (!isRefused) return;
    console.err << "The capture has a fault"
                << (options.output.empty() ? "" : ": no geometry was written (--force writes it all the same)")
                << ".\n";
    throw CommandEnded{exitFindings};
}

constexpr const char* geometryFooter =
    "Examples:\n"
    "  qmv40 geometry --a-axis a-axis.csv --b-axis b-axis.csv --output head.ini\n"
    "  qmv40 geometry --a-axis a-axis.csv --b-axis b-axis.csv --centre-within 0.01 --svg residuals.svg\n"
    "  qmv40 geometry --a-axis a-axis.csv --b-axis b-axis.csv --record head-4711.html --head 4711\n"
    "\n"
    "A capture is a CSV file with the columns APosition, BPosition, XPosition, YPosition, ZPosition in any order\n"
    "and letter case: the head's angles, and the machine's position with the stylus tip on the pole sphere and the\n"
    "head unlocked. The decimal mark is `.`, or `,` where semicolons or tabulators separate the columns; `#` starts a\n"
    "comment line, other columns are ignored. At least four points for each axis.\n"
    "Capture the A points at B = 45, -45, 135 or -135 with a straight stylus: elsewhere the turn of the head about\n"
    "Z may come out on the wrong side. Capture the B points at A = 75 or 90: with a stylus that hangs (A = 0) their\n"
    "circle is too small to have an axis. Unlock the head for all points, with no offset of a tip in force.\n"
    "\n"
    "Give --sphere and --stylus when you know them: an offset that is the same in every point is seen in no other "
    "way.\n"
    "\n"
    "The capture is judged: how well head centre and rotation are known, and whether points, angles and the\n"
    "component's answer agree. Findings have names, which docs/diagnostics.md explains. A warning is shown and no\n"
    "more. A fault means that the geometry is wrong, or cannot be shown to be right: no geometry is written, and the\n"
    "exit code is 4.";

} // namespace

void AddGeometryCommand(Command tool) {
    auto [command, options] = tool.AddCommand<GeometryOptions>(
        "geometry", "Compute the head geometry from captured points", geometryFooter, Run);
    AddCaptureFiles(command, options.capture, true);
    command.AddText("--output", options.output, "FILE", "Save the geometry here; without it no geometry is written");
    command.AddText("--svg", options.picture, "FILE",
                    "Draw both circles with the residual of each point, up to 1000 times as long (SVG)");
    command.AddText("--record", options.record, "FILE",
                    "Write a page to print and keep: verdict, picture, geometry, capture, settings (HTML)");
    command.AddText("--head", options.headNumber, "NUMBER", "The head's serial number, for the record");
    command.AddFlag("--force", options.force, "Write the geometry, and end with 0, even when the capture has a fault");
    AddJudgingOptions(command, options.capture);
    AddUnits(command, options.capture.unit, "What the capture, --sphere and --stylus are in; the geometry is in mm");
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
