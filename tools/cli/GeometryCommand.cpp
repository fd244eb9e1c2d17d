#include "cli/AlignmentArray.h"
#include "cli/Calculator.h"
#include "cli/Capture.h"
#include "cli/Commands.h"
#include "cli/DiagnosisReport.h"
#include "cli/FitRows.h"
#include "cli/Json.h"
#include "cli/Options.h"
#include "cli/Platform.h"
#include "cli/PositionLine.h"
#include "diagnostics/HeldAngles.h"
#include "head/RoundThePole.h"

namespace {

struct GeometryOptions : CommonOptions {
    std::string aAxis;
    std::string bAxis;
    std::string output; ///< empty: nothing is written
    bool force = false; ///< write even what contradicts itself
    double centreWithin = diagnostics::thresholds::centreWithin;
};

/// The head centre comes from the component; what its interface does not give, from the geometry model itself.
struct GeometryReport {
    XYZData headCentre;
    double rotationAroundZ;
    XYZData safePosition;
    CircleFit aAxis;
    CircleFit bAxis;
    double aAxisCaptureB;
    double bAxisCaptureA;
    std::optional<diagnostics::Diagnosis> diagnosis; ///< none: the numbers are too large to be judged

    bool Contradicts() const { return diagnosis && diagnosis->Has(diagnostics::Severity::Fault); }
};

CircleFit AxisFit(const CMaPointArray& points, const CMaVector& axis) {
    CircleFit fit = FitCircle(points);
    fit.normal = Facing(fit.normal, axis);
    return fit;
}

/// The points with their angles, without them being brought to the locked position.
diagnostics::CapturedSets SetsOf(const CaptureFiles& capture) {
    diagnostics::CapturedSets sets;
    for (const CaptureFile* const file : {&capture.aAxis, &capture.bAxis}) {
        for (const HeadAlignmentDataItem& item : file->items) {
            sets.points.push_back({item.APosition, item.BPosition, {item.XPosition, item.YPosition, item.ZPosition}});
        }
    }
    sets.aCount = capture.aAxis.items.size();
    return sets;
}

diagnostics::CaptureUnderTest UnderTest(const CaptureFiles& capture, const RoundThePole& head, double centreWithin) {
    diagnostics::CaptureUnderTest test{SetsOf(capture), head.RequiredRotationAroundZ(), centreWithin};
    for (std::size_t i = 0; i < test.sets.points.size(); ++i) {
        const bool isOfASet = test.sets.IsOfASet(i);
        const CMaPointArray& points = isOfASet ? head.AAxisPoints() : head.BAxisPoints();
        const CMaPoint locked = points[static_cast<int>(isOfASet ? i : i - test.sets.aCount)];
        test.sets.points[i].position = {locked.x(), locked.y(), locked.z()};
    }
    return test;
}

GeometryReport Report(const CaptureFiles& capture, const XYZData& headCentre, double centreWithin) {
    RoundThePole head;
    CMaVector aAxis(0.0, 0.0, 0.0);
    CatchingCodes("RoundThePole", [&] {
        AlignmentArray aAxisArray(capture.aAxis.items);
        AlignmentArray bAxisArray(capture.bAxis.items);
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
            diagnostics::Diagnose(UnderTest(capture, head, centreWithin))};
}

CMaVector VectorOf(const XYZData& position) { return {position.XPosition, position.YPosition, position.ZPosition}; }

Json ReportJson(const GeometryReport& report, const CaptureFiles& capture) {
    return {{"headCentre", PointJson(VectorOf(report.headCentre))},
            {"requiredRotationAroundZ", report.rotationAroundZ},
            {"safePosition", PointJson(VectorOf(report.safePosition))},
            {"fits", {{"aAxis", CircleJson(report.aAxis)}, {"bAxis", CircleJson(report.bAxis)}}},
            {"diagnostics", report.diagnosis ? DiagnosisJson(*report.diagnosis, capture) : Json(nullptr)}};
}

/// Every point is off a circle in two ways; six of them would determine it.
std::string Redundancy(const CircleFit& fit) { return std::to_string(2 * fit.residuals.values.size() - 6); }

void PrintFits(const GeometryReport& report, const Console& console) {
    const CircleFit& a = report.aAxis;
    const CircleFit& b = report.bAxis;
    FitRows rows({"A axis", "B axis"});
    rows.Add("points", "", {std::to_string(a.residuals.values.size()), std::to_string(b.residuals.values.size())});
    rows.Add("captured at", "deg", {"B " + ExactText(report.aAxisCaptureB), "A " + ExactText(report.bAxisCaptureA)});
    rows.AddPoint("centre", {a.centre, b.centre});
    rows.AddDirection("axis", {a.normal, b.normal});
    rows.Add("radius", "mm", {FitRows::Length(a.radius), FitRows::Length(b.radius)});
    rows.Add("arc covered", "deg", {FitRows::Angle(a.arcCovered), FitRows::Angle(b.arcCovered)});
    rows.Add("redundant observations", "", {Redundancy(a), Redundancy(b)});
    rows.AddResiduals({&a.residuals, &b.residuals});
    rows.Print(console);
}

void PrintJudgement(const GeometryReport& report, const CaptureFiles& capture, const Console& console) {
    if (!report.diagnosis) {
        console.out << "The numbers are too large to be judged.\n";
        return;
    }
    const diagnostics::Diagnosis& diagnosis = *report.diagnosis;
    PrintDiagnosis(diagnosis, capture, console);
    console.out << '\n' << console.Strong("Findings") << '\n';
    PrintFindings(diagnosis.findings, capture, diagnosis.head.model.tip, console.out);
}

void PrintReport(const GeometryReport& report, const CaptureFiles& capture, const Console& console) {
    console.out << console.Strong("Head centre (centre of the pole sphere)") << '\n'
                << PositionLine(report.headCentre) << '\n'
                << console.Strong("Head turned about Z by") << "\n  " << FitRows::Angle(report.rotationAroundZ)
                << " deg\n"
                << console.Strong("Safe height, above the pole sphere and both levers") << "\n  Z "
                << FitRows::Length(report.safePosition.ZPosition) << " mm\n\n"
                << console.Strong("Circles through the points, brought to the locked position") << '\n';
    PrintFits(report, console);
    console.out << "  The RMS tells how well the points lie on a circle, not how well its centre is known.\n\n";
    PrintJudgement(report, capture, console);
}

/// The component refused the capture. Where the angles alone say why, that is told beside its own words.
[[noreturn]] void Refuse(const ComponentError& error, const CaptureFiles& capture, bool json, const Console& console) {
    const auto findings = diagnostics::JudgeHeldAngles(SetsOf(capture));
    if (error.code != QMV_E_FIXED_AXIS_MOVED || findings.empty()) throw error;
    if (json) {
        Json document = ErrorJson(error);
        document["diagnostics"] = FindingsJson(findings, capture, {});
        PrintJson(document, console.out);
    } else {
        console.err << "qmv40: error " << CodeText(error.code) << " from " << error.source << ": " << error.description
                    << '\n';
        PrintFindings(findings, capture, {}, console.err);
    }
    throw CommandEnded{exitRefused};
}

GeometryReport Compute(const GeometryOptions& options, const CaptureFiles& capture, Calculator& calculator,
                       const Console& console) {
    try {
        calculator.EnterHeadGeometry(capture.aAxis.items, capture.bAxis.items);
    } catch (const ComponentError& error) {
        Refuse(error, capture, options.json, console);
    }
    return Report(capture, calculator.PoleSpherePosition(), options.centreWithin);
}

void Run(const GeometryOptions& options, const Console& console) {
    const SettingsOverride settings(options.settings);
    const CaptureFiles capture{ReadCaptureFile(options.aAxis), ReadCaptureFile(options.bAxis)};
    Calculator calculator;
    const GeometryReport report = Compute(options, capture, calculator, console);
    const bool isRefused = report.Contradicts() && !options.force;
    const bool isWritten = !options.output.empty() && !isRefused;
    if (isWritten) calculator.SaveHeadGeometry(options.output);

    if (options.json) {
        PrintJson(ReportJson(report, capture), console.out);
    } else {
        PrintReport(report, capture, console);
    }
    if (isWritten) console.err << "The geometry was written to " << options.output << '\n';
    if (!isRefused) return;
    console.err << "The capture contradicts itself"
                << (options.output.empty() ? "" : ": nothing was written (--force writes it all the same)") << ".\n";
    throw CommandEnded{exitFindings};
}

void AddJudgingOptions(CLI::App& command, GeometryOptions& options) {
    command.add_flag("--force", options.force,
                     "Write the geometry, and end with 0, even when the capture contradicts itself");
    command
        .add_option_function<std::string>(
            "--centre-within",
            [&options](const std::string& text) {
                const ParsedNumber number = ParseNumber(text);
                if (number.problem != nullptr || !(number.value > 0.0)) {
                    throw CLI::ValidationError("--centre-within", "'" + text + "' is not a length of more than 0 mm");
                }
                options.centreWithin = number.value;
            },
            "Warn when the head centre is not known to this, twice its standard deviation. 0.05 unless given")
        ->type_name("MM");
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

void AddGeometryCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("geometry", "Compute the head geometry from captured points");
    const auto options = std::make_shared<GeometryOptions>();
    command.add_option("--a-axis", options->aAxis, "Points captured while A alone was turned (CSV)")
        ->required()
        ->type_name("FILE");
    command.add_option("--b-axis", options->bAxis, "Points captured while B alone was turned (CSV)")
        ->required()
        ->type_name("FILE");
    command.add_option("--output", options->output, "Save the geometry here; without it nothing is written")
        ->type_name("FILE");
    AddJudgingOptions(command, *options);
    AddCommonOptions(command, *options);
    command.footer(geometryFooter);
    command.callback([options, &console] { Run(*options, console); });
}
