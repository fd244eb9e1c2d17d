#include "cli/AlignmentArray.h"
#include "cli/Calculator.h"
#include "cli/Capture.h"
#include "cli/Commands.h"
#include "cli/FitRows.h"
#include "cli/Json.h"
#include "cli/Options.h"
#include "cli/Platform.h"
#include "cli/PositionLine.h"
#include "head/RoundThePole.h"

namespace {

struct GeometryOptions : CommonOptions {
    std::string aAxis;
    std::string bAxis;
    std::string output; ///< empty: nothing is written
};

struct Capture {
    std::vector<HeadAlignmentDataItem> aAxis;
    std::vector<HeadAlignmentDataItem> bAxis;
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
};

CircleFit AxisFit(const CMaPointArray& points, const CMaVector& axis) {
    CircleFit fit = FitCircle(points);
    fit.normal = Facing(fit.normal, axis);
    return fit;
}

GeometryReport Report(const Capture& capture, const XYZData& headCentre) {
    RoundThePole head;
    CMaVector aAxis(0.0, 0.0, 0.0);
    CatchingCodes("RoundThePole", [&] {
        AlignmentArray aAxisArray(capture.aAxis);
        AlignmentArray bAxisArray(capture.bAxis);
        head.ComputeGeometry(aAxisArray.Address(), bAxisArray.Address());
        head.RotatedAAxis(head.AAxisCaptureBPosition(), aAxis);
    });
    return {headCentre,
            head.RequiredRotationAroundZ(),
            {head.SafePositionX(), head.SafePositionY(), head.SafePositionZ()},
            AxisFit(head.AAxisPoints(), aAxis),
            AxisFit(head.BAxisPoints(), head.BAxis()),
            head.AAxisCaptureBPosition(),
            capture.bAxis.front().APosition};
}

CMaVector VectorOf(const XYZData& position) { return {position.XPosition, position.YPosition, position.ZPosition}; }

Json ReportJson(const GeometryReport& report) {
    return {{"headCentre", PointJson(VectorOf(report.headCentre))},
            {"requiredRotationAroundZ", report.rotationAroundZ},
            {"safePosition", PointJson(VectorOf(report.safePosition))},
            {"fits", {{"aAxis", CircleJson(report.aAxis)}, {"bAxis", CircleJson(report.bAxis)}}}};
}

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
    rows.AddResiduals({&a.residuals, &b.residuals});
    rows.Print(console);
}

void PrintReport(const GeometryReport& report, const Console& console) {
    console.out << console.Strong("Head centre (centre of the pole sphere)") << '\n'
                << PositionLine(report.headCentre) << '\n'
                << console.Strong("Head turned about Z by") << "\n  " << FitRows::Angle(report.rotationAroundZ)
                << " deg\n"
                << console.Strong("Safe height, above the pole sphere and both levers") << "\n  Z "
                << FitRows::Length(report.safePosition.ZPosition) << " mm\n\n"
                << console.Strong("Circles through the points, brought to the locked position") << '\n';
    PrintFits(report, console);
    console.out
        << "\nThe RMS tells how well the points lie on a circle, not how well its centre is known. With seven points "
           "the\n"
           "centre scatters about as much as a point does on half a turn, 3.4 times as much on 90 deg, 7 times on\n"
           "60 deg and 29 times on 30 deg. Capture A over its whole range.\n";
}

void Run(const GeometryOptions& options, const Console& console) {
    const SettingsOverride settings(options.settings);
    const Capture capture{ReadCapture(options.aAxis), ReadCapture(options.bAxis)};
    Calculator calculator;
    calculator.EnterHeadGeometry(capture.aAxis, capture.bAxis);
    const GeometryReport report = Report(capture, calculator.PoleSpherePosition());
    if (!options.output.empty()) calculator.SaveHeadGeometry(options.output);

    if (options.json) {
        PrintJson(ReportJson(report), console.out);
    } else {
        PrintReport(report, console);
    }
    if (!options.output.empty()) console.err << "The geometry was written to " << options.output << '\n';
}

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
    AddCommonOptions(command, *options);
    command.footer(
        "Example:\n"
        "  qmv40 geometry --a-axis a-axis.csv --b-axis b-axis.csv --output head.ini\n"
        "\n"
        "A capture is a CSV file with the columns APosition, BPosition, XPosition, YPosition, ZPosition in any order\n"
        "and letter case: the head's angles and the point on the pole sphere, measured with the head unlocked. `.` is\n"
        "the decimal mark, `#` starts a comment line, other columns are ignored. At least four points for each axis.\n"
        "Capture the A points at B = 45, -45, 135 or -135 with a straight stylus: elsewhere the turn of the head "
        "about\n"
        "Z may come out on the wrong side.");
    command.callback([options, &console] { Run(*options, console); });
}
