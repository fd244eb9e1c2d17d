#include "cli/Capture.h"
#include "cli/Commands.h"
#include "cli/FitRows.h"
#include "cli/Json.h"
#include "cli/Options.h"

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

void ShowCircle(const CMaPointArray& points, bool json, const Console& console) {
    CircleFit fit = FitCircle(points);
    fit.normal = WithLargestPositive(fit.normal);
    if (json) {
        Json document{{"shape", "circle"}};
        document.update(CircleJson(fit));
        return PrintJson(document, console.out);
    }
    FitRows rows({"circle"});
    rows.Add("points", "", {std::to_string(fit.residuals.values.size())});
    rows.AddPoint("centre", {fit.centre});
    rows.AddDirection("normal", {fit.normal});
    rows.Add("radius", "mm", {FitRows::Length(fit.radius)});
    rows.Add("arc covered", "deg", {FitRows::Angle(fit.arcCovered)});
    rows.AddResiduals({&fit.residuals});
    rows.Print(console);
}

/// A plane or a line: `direction` is its normal or the way it runs.
void ShowFlat(const FitOptions& options, const char* directionName, const CMaVector& point, const CMaVector& direction,
              const Residuals& residuals, const Console& console) {
    if (options.json) {
        return PrintJson({{"shape", options.shape},
                          {"point", PointJson(point)},
                          {directionName, DirectionJson(direction)},
                          {"rms", residuals.Rms()},
                          {"residuals", residuals.values}},
                         console.out);
    }
    FitRows rows({options.shape});
    rows.Add("points", "", {std::to_string(residuals.values.size())});
    rows.AddPoint("point", {point});
    rows.AddDirection(directionName, {direction});
    rows.AddResiduals({&residuals});
    rows.Print(console);
}

void Run(const FitOptions& options, const Console& console) {
    const CMaPointArray points = PointArrayOf(ReadPoints(options.points));
    if (options.shape == "circle") return ShowCircle(points, options.json, console);
    if (options.shape == "plane") {
        const PlaneFit fit = FitPlane(points);
        return ShowFlat(options, "normal", fit.point, fit.normal, fit.residuals, console);
    }
    const LineFit fit = FitLine(points);
    ShowFlat(options, "direction", fit.point, fit.direction, fit.residuals, console);
}

} // namespace

void AddFitCommand(CLI::App& tool, const Console& console) {
    CLI::App& command = *tool.add_subcommand("fit", "Fit a circle, plane or line through points by least squares");
    const auto options = std::make_shared<FitOptions>();
    command.add_option("--shape", options->shape, "What to fit")
        ->required()
        ->check(CLI::IsMember({"circle", "plane", "line"}));
    command.add_option("--points", options->points, "CSV file with the columns XPosition, YPosition, ZPosition")
        ->required()
        ->type_name("FILE");
    AddCommonOptions(command, *options);
    command.footer(
        "Example:\n"
        "  qmv40 fit --shape circle --points a-axis.csv\n"
        "\n"
        "The points are taken as they stand in the file. Residuals are distances from the shape, for a plane\n"
        "with the sign that its normal gives. A normal or direction could as well point the other way; the\n"
        "one whose largest component is positive is shown. No settings have a say in a fit.");
    command.callback([options, &console] { Run(*options, console); });
}
