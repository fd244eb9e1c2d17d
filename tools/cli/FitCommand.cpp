#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/diagnosis/Capture.h"
#include "tools/diagnosis/Fits.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct FitOptions : CommonOptions {
    std::string shape;
    std::string points;
};

CMaPointArray PointArrayOf(const std::vector<XYZData>& points) {
    CMaPointArray array(0);
    for (const XYZData& point : points) array.Add(CMaPoint(point.XPosition, point.YPosition, point.ZPosition));
    return array;
}

void ShowCircle(const CMaPointArray& points, bool json, const text::Console& console) {
    diagnosis::CircleFit fit = diagnosis::FitCircle(points);
    fit.normal = diagnosis::WithLargestPositive(fit.normal);
    if (json) {
        text::Json document{{"shape", "circle"}};
        document.Update(diagnosis::CircleJson(fit));
        return text::PrintDocument("fit", document, console.out);
    }
    diagnosis::FitRows rows({"circle"});
    rows.Add("points", "", {std::to_string(fit.residuals.values.size())});
    rows.AddPoint("centre", {fit.centre});
    rows.AddDirection("normal", {fit.normal});
    rows.Add("radius", "mm", {diagnosis::FitRows::Length(fit.radius)});
    rows.Add("arc covered", "deg", {diagnosis::FitRows::Angle(fit.arcCovered)});
    rows.AddResiduals({&fit.residuals});
    rows.Print(console);
}

void ShowFlat(const FitOptions& options, const char* directionName, const diagnosis::FlatFit& fit,
              const text::Console& console) {
    const auto& [point, direction, residuals] = fit;
    if (options.json) {
        return text::PrintDocument("fit",
                                   {{"shape", options.shape},
                                    {"point", diagnosis::PointJson(point)},
                                    {directionName, diagnosis::DirectionJson(direction)},
                                    {"rms", residuals.Rms()},
                                    {"residuals", residuals.values}},
                                   console.out);
    }
    diagnosis::FitRows rows({options.shape});
    rows.Add("points", "", {std::to_string(residuals.values.size())});
    rows.AddPoint("point", {point});
    rows.AddDirection(directionName, {direction});
    rows.AddResiduals({&residuals});
    rows.Print(console);
}

void Run(const FitOptions& options, const text::Console& console) {
    const CMaPointArray points = PointArrayOf(diagnosis::ReadPoints(options.points));
    if (options.shape == "circle") return ShowCircle(points, options.json, console);
    if (options.shape == "plane") return ShowFlat(options, "normal", diagnosis::FitPlane(points), console);
    ShowFlat(options, "direction", diagnosis::FitLine(points), console);
}

constexpr const char* fitFooter =
    "Example:\n"
    "  qmv40 fit --shape circle --points a-axis.csv\n"
    "\n"
    "The points are taken as they stand in the file. Residuals are distances from the shape, for a plane\n"
    "with the sign that its normal gives. A normal or direction could as well point the other way; the\n"
    "one whose largest component is positive is shown. Settings have no influence on a fit.";

} // namespace

void AddFitCommand(Command tool) {
    auto [command, options] = tool.AddCommand<FitOptions>(
        "fit", "Fit a circle, plane or line through points by least squares", fitFooter, Run);
    command.AddText("--shape", options.shape, "TEXT", "What to fit").Require().AcceptOnly({"circle", "plane", "line"});
    command.AddText("--points", options.points, "FILE", "CSV file with the columns XPosition, YPosition, ZPosition")
        .Require();
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
