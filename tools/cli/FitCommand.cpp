#include "tools/captures/Capture.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/report/Fits.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct FitOptions : CommonOptions {
    std::string shape;
    std::string points;
    text::LengthUnit unit = text::LengthUnit::Millimetre; ///< of the points
};

void ShowCircle(report::Points points, bool json, const text::Console& console) {
    const auto fitted = report::FitCircle(points);
    const report::ReportedCircle circle(fitted, report::WithLargestPositive(fitted.normal));
    if (json) {
        text::Json document{{"shape", "circle"}};
        document.Update(circle.Document());
        return text::PrintDocument("fit", document, console.out);
    }
    report::FitRows rows({"circle"});
    rows.Add("points", "", {std::to_string(points.size())});
    rows.AddPoint("centre", {fitted.centre});
    rows.AddDirection("normal", {circle.normal});
    rows.Add("radius", "mm", {report::FitRows::Length(fitted.radius)});
    rows.Add("arc covered", "deg", {report::FitRows::Angle(fitted.arcCovered)});
    rows.AddResiduals({&circle.residuals});
    rows.Print(console);
}

void ShowFlat(const FitOptions& options, const char* directionName, const report::FlatFit& fit,
              const text::Console& console) {
    const auto& [point, direction, residuals] = fit;
    if (options.json) {
        return text::PrintDocument("fit",
                                   {{"shape", options.shape},
                                    {"point", text::PointJson(point)},
                                    {directionName, text::DirectionJson(direction)},
                                    {"rms", residuals.Rms()},
                                    {"residuals", residuals.values}},
                                   console.out);
    }
    report::FitRows rows({options.shape});
    rows.Add("points", "", {std::to_string(residuals.values.size())});
    rows.AddPoint("point", {point});
    rows.AddDirection(directionName, {direction});
    rows.AddResiduals({&residuals});
    rows.Print(console);
}

void Run(const FitOptions& options, const text::Console& console) {
    const std::vector<model::Vector3> points = captures::ReadPoints(options.points, options.unit);
    if (options.shape == "circle") return ShowCircle(points, options.json, console);
    if (options.shape == "plane") return ShowFlat(options, "normal", report::FitPlane(points), console);
    ShowFlat(options, "direction", report::FitLine(points), console);
}

constexpr const char* fitFooter =
    "Example:\n"
    "  qmv40 fit --shape circle --points a-axis.csv\n"
    "\n"
    "The points are fitted as they were measured: nothing is subtracted for unlocking. Residuals are distances\n"
    "from the shape, for a plane with the sign that its normal gives. A normal or direction could as well point\n"
    "the other way; the one whose largest component is positive is shown. Settings have no influence on a fit.";

} // namespace

void AddFitCommand(Command tool) {
    auto [command, options] = tool.AddCommand<FitOptions>(
        "fit", "Fit a circle, plane or line through points by least squares", fitFooter, Run);
    command.AddText("--shape", options.shape, "TEXT", "What to fit").Require().AcceptOnly({"circle", "plane", "line"});
    command.AddText("--points", options.points, "FILE", "CSV file with the columns XPosition, YPosition, ZPosition")
        .Require();
    AddUnits(command, options.unit, "What the points are in; the results are in mm");
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
