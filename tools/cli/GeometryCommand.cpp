#include "head/RoundThePole.h"
#include "interface/ErrorCodes.h"
#include "tools/cli/Commands.h"
#include "tools/cli/ExitCode.h"
#include "tools/cli/Options.h"
#include "tools/component/AlignmentArray.h"
#include "tools/component/Calculator.h"
#include "tools/component/ComponentError.h"
#include "tools/diagnosis/Capture.h"
#include "tools/diagnosis/DiagnosisReport.h"
#include "tools/diagnosis/FitRows.h"
#include "tools/diagnosis/Fits.h"
#include "tools/diagnosis/HeldAngles.h"
#include "tools/plans/PositionLine.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct GeometryOptions : CommonOptions {
    std::string aAxis;
    std::string bAxis;
    std::string output; ///< empty: nothing is written
    bool force = false; ///< write even what contradicts itself
    double centreWithin = diagnosis::thresholds::centreWithin;
};

/// The head centre comes from the component; what its interface does not give, from the geometry model itself.
struct GeometryReport {
    XYZData headCentre;
    double rotationAroundZ;
    XYZData safePosition;
    diagnosis::CircleFit aAxis;
    diagnosis::CircleFit bAxis;
    double aAxisCaptureB;
    double bAxisCaptureA;
    std::optional<diagnosis::Diagnosis> diagnosis; ///< none: the numbers are too large to be judged

    bool Contradicts() const { return diagnosis && diagnosis->Has(diagnosis::Severity::Fault); }
};

diagnosis::CircleFit AxisFit(const CMaPointArray& points, const CMaVector& axis) {
    diagnosis::CircleFit fit = diagnosis::FitCircle(points);
    fit.normal = diagnosis::Facing(fit.normal, axis);
    return fit;
}

/// The points with their angles, without them being brought to the locked position.
diagnosis::CapturedSets SetsOf(const diagnosis::CaptureFiles& capture) {
    diagnosis::CapturedSets sets;
    for (const diagnosis::CaptureFile* const file : {&capture.aAxis, &capture.bAxis}) {
        for (const HeadAlignmentDataItem& item : file->items) {
            sets.points.push_back({item.APosition, item.BPosition, {item.XPosition, item.YPosition, item.ZPosition}});
        }
    }
    sets.aCount = capture.aAxis.items.size();
    return sets;
}

diagnosis::CaptureUnderTest UnderTest(const diagnosis::CaptureFiles& capture, const RoundThePole& head,
                                      double centreWithin) {
    diagnosis::CaptureUnderTest test{SetsOf(capture), head.RequiredRotationAroundZ(), centreWithin};
    for (std::size_t i = 0; i < test.sets.points.size(); ++i) {
        const bool isOfASet = test.sets.IsOfASet(i);
        const CMaPointArray& points = isOfASet ? head.AAxisPoints() : head.BAxisPoints();
        const CMaPoint locked = points[static_cast<int>(isOfASet ? i : i - test.sets.aCount)];
        test.sets.points[i].position = {locked.x(), locked.y(), locked.z()};
    }
    return test;
}

GeometryReport Report(const diagnosis::CaptureFiles& capture, const XYZData& headCentre, double centreWithin) {
    RoundThePole head;
    CMaVector aAxis(0.0, 0.0, 0.0);
    component::CatchingCodes("RoundThePole", [&] {
        component::AlignmentArray aAxisArray(capture.aAxis.items);
        component::AlignmentArray bAxisArray(capture.bAxis.items);
        head.ComputeGeometry(aAxisArray.Address(), bAxisArray.Address());
        head.RotatedAAxis(head.AAxisCaptureBPosition(), aAxis);
    });
    return {headCentre,
            head.RequiredRotationAroundZ(),
            {head.SafePositionX(), head.SafePositionY(), head.SafePositionZ()},
            AxisFit(head.AAxisPoints(), aAxis),
            AxisFit(head.BAxisPoints(), head.BAxis()),
            head.AAxisCaptureBPosition(),
            capture.bAxis.items.front().APosition,
            diagnosis::Diagnose(UnderTest(capture, head, centreWithin))};
}

CMaVector VectorOf(const XYZData& position) { return {position.XPosition, position.YPosition, position.ZPosition}; }

text::Json ReportJson(const GeometryReport& report, const diagnosis::CaptureFiles& capture) {
    return {
        {"headCentre", diagnosis::PointJson(VectorOf(report.headCentre))},
        {"requiredRotationAroundZ", report.rotationAroundZ},
        {"safePosition", diagnosis::PointJson(VectorOf(report.safePosition))},
        {"fits", {{"aAxis", diagnosis::CircleJson(report.aAxis)}, {"bAxis", diagnosis::CircleJson(report.bAxis)}}},
        {"diagnostics", report.diagnosis ? diagnosis::DiagnosisJson(*report.diagnosis, capture) : text::Json(nullptr)}};
}

/// Every point is off a circle in two ways; six of them would determine it.
std::string Redundancy(const diagnosis::CircleFit& fit) { return std::to_string(2 * fit.residuals.values.size() - 6); }

void PrintFits(const GeometryReport& report, const text::Console& console) {
    const diagnosis::CircleFit& a = report.aAxis;
    const diagnosis::CircleFit& b = report.bAxis;
    diagnosis::FitRows rows({"A axis", "B axis"});
    rows.Add("points", "", {std::to_string(a.residuals.values.size()), std::to_string(b.residuals.values.size())});
    rows.Add("captured at", "deg",
             {"B " + text::ExactText(report.aAxisCaptureB), "A " + text::ExactText(report.bAxisCaptureA)});
    rows.AddPoint("centre", {a.centre, b.centre});
    rows.AddDirection("axis", {a.normal, b.normal});
    rows.Add("radius", "mm", {diagnosis::FitRows::Length(a.radius), diagnosis::FitRows::Length(b.radius)});
    rows.Add("arc covered", "deg", {diagnosis::FitRows::Angle(a.arcCovered), diagnosis::FitRows::Angle(b.arcCovered)});
    rows.Add("redundant observations", "", {Redundancy(a), Redundancy(b)});
    rows.AddResiduals({&a.residuals, &b.residuals});
    rows.Print(console);
}

void PrintJudgement(const GeometryReport& report, const diagnosis::CaptureFiles& capture,
                    const text::Console& console) {
    if (!report.diagnosis) {
        console.out << "The numbers are too large to be judged.\n";
        return;
    }
    const diagnosis::Diagnosis& diagnosis = *report.diagnosis;
    diagnosis::PrintDiagnosis(diagnosis, capture, console);
    console.out << '\n' << console.Strong("Findings") << '\n';
    diagnosis::PrintFindings(diagnosis.findings, capture, diagnosis.head.model.tip, console.out);
}

void PrintReport(const GeometryReport& report, const diagnosis::CaptureFiles& capture, const text::Console& console) {
    console.out << console.Strong("Head centre (centre of the pole sphere)") << '\n'
                << plans::PositionLine(report.headCentre) << '\n'
                << console.Strong("Head turned about Z by") << "\n  "
                << diagnosis::FitRows::Angle(report.rotationAroundZ) << " deg\n"
                << console.Strong("Safe height, above the pole sphere and both levers") << "\n  Z "
                << diagnosis::FitRows::Length(report.safePosition.ZPosition) << " mm\n\n"
                << console.Strong("Circles through the points, brought to the locked position") << '\n';
    PrintFits(report, console);
    console.out << "  The RMS tells how well the points lie on a circle, not how well its centre is known.\n\n";
    PrintJudgement(report, capture, console);
}

/// The component refused the capture. Where the angles alone say why, that is told beside its own words.
[[noreturn]] void Refuse(const component::ComponentError& error, const diagnosis::CaptureFiles& capture, bool json,
                         const text::Console& console) {
    const auto findings = diagnosis::JudgeHeldAngles(SetsOf(capture));
    if (error.code != QMV_E_FIXED_AXIS_MOVED || findings.empty()) throw error;
    if (json) {
        text::Json document = component::ErrorJson(error);
        document["diagnostics"] = diagnosis::FindingsJson(findings, capture, {});
        text::PrintDocument("geometry", document, console.out);
    } else {
        console.err << "qmv40: error " << component::CodeText(error.code) << " from " << error.source << ": "
                    << error.description << '\n';
        diagnosis::PrintFindings(findings, capture, {}, console.err);
    }
    throw CommandEnded{exitRefused};
}

GeometryReport Compute(const GeometryOptions& options, const diagnosis::CaptureFiles& capture,
                       component::Calculator& calculator, const text::Console& console) {
    try {
        calculator.EnterHeadGeometry(capture.aAxis.items, capture.bAxis.items);
    } catch (const component::ComponentError& error) {
        Refuse(error, capture, options.json, console);
    }
    return Report(capture, calculator.PoleSpherePosition(), options.centreWithin);
}

void Run(const GeometryOptions& options, const text::Console& console) {
    if (!options.output.empty()) text::RequireNewOrOfKind(options.output, settings::GeometryFileKind());
    const SettingsInUse settings(options, console);
    const diagnosis::CaptureFiles capture{diagnosis::ReadCaptureFile(options.aAxis),
                                          diagnosis::ReadCaptureFile(options.bAxis)};
    for (const auto* const file : {&capture.aAxis, &capture.bAxis}) {
        diagnosis::RequireUnit(*file, text::LengthUnit::Millimetre);
    }
    component::Calculator calculator;
    const GeometryReport report = Compute(options, capture, calculator, console);
    const bool isRefused = report.Contradicts() && !options.force;
    const bool isWritten = !options.output.empty() && !isRefused;
    if (isWritten) calculator.SaveHeadGeometry(options.output);

    if (options.json) {
        text::PrintDocument("geometry", ReportJson(report, capture), console.out);
    } else {
        PrintReport(report, capture, console);
    }
    if (isWritten) console.err << "The geometry was written to " << options.output << '\n';
    if (!isRefused) return;
    console.err << "The capture contradicts itself"
                << (options.output.empty() ? "" : ": nothing was written (--force writes it all the same)") << ".\n";
    throw CommandEnded{exitFindings};
}

void AddJudgingOptions(Command& command, GeometryOptions& options) {
    command.AddFlag("--force", options.force,
                    "Write the geometry, and end with 0, even when the capture contradicts itself");
    command.AddValue("--centre-within", "MM",
                     "Warn when the head centre is not known to this, twice its standard deviation. 0.05 unless given",
                     [&options](const std::string& value) -> std::string {
                         const text::ParsedNumber number = text::ParseNumber(value);
                         if (number.problem != nullptr || !(number.value > 0.0)) {
                             return "'" + value + "' is not a length of more than 0 mm";
                         }
                         options.centreWithin = number.value;
                         return "";
                     });
}

constexpr const char* geometryFooter =
    "Examples:\n"
    "  qmv40 geometry --a-axis a-axis.csv --b-axis b-axis.csv --output head.ini\n"
    "  qmv40 geometry --a-axis a-axis.csv --b-axis b-axis.csv --centre-within 0.01\n"
    "\n"
    "A capture is a CSV file with the columns APosition, BPosition, XPosition, YPosition, ZPosition in any order\n"
    "and letter case: the head's angles and the point on the pole sphere, measured with the head unlocked. `.` is\n"
    "the decimal mark, `#` starts a comment line, other columns are ignored. At least four points for each axis.\n"
    "Capture the A points at B = 45, -45, 135 or -135 with a straight stylus: elsewhere the turn of the head about\n"
    "Z may come out on the wrong side.\n"
    "\n"
    "The capture is judged: how well head centre and rotation are known, and whether points, angles and the\n"
    "component's answer agree. Findings have names, which docs/diagnostics.md explains. A warning is shown and no\n"
    "more. A fault means that the capture contradicts itself: nothing is written and the exit code is 4.";

} // namespace

void AddGeometryCommand(Command tool, const text::Console& console) {
    Command command = tool.AddCommand("geometry", "Compute the head geometry from captured points");
    const auto options = std::make_shared<GeometryOptions>();
    command.AddText("--a-axis", options->aAxis, "FILE", "Points captured while A alone was turned (CSV)").Require();
    command.AddText("--b-axis", options->bAxis, "FILE", "Points captured while B alone was turned (CSV)").Require();
    command.AddText("--output", options->output, "FILE", "Save the geometry here; without it nothing is written");
    AddJudgingOptions(command, *options);
    AddCommonOptions(command, *options);
    command.SetFooter(geometryFooter);
    command.OnRun([options, &console] { Run(*options, console); });
}

} // namespace qmv40::cli
