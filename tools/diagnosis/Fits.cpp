#include "tools/diagnosis/Fits.h"

#include "maths/RaisingGeometryErrors.h"
#include "tools/component/ComponentError.h"
#include "tools/diagnosis/fit/AxisCircle.h"
#include "tools/model/Angles.h"
#include "tools/text/Numbers.h"

#include <algorithm>

namespace qmv40::diagnosis {

namespace {

// As many as the component allows for the circles of a head
constexpr long fitIterationLimit = 200000;

CMaVector Difference(const CMaVector& a, const CMaVector& b) { return a + b * -1.0; }

CMaVector Normalised(const CMaVector& v) { return v * (1.0 / v.Magnitude()); }

template <typename Measure> Residuals ResidualsOf(const CMaPointArray& points, Measure&& measure) {
    Residuals residuals;
    for (int i = 0; i < points.GetSize(); ++i) residuals.values.push_back(measure(points[i].To3DVector()));
    return residuals;
}

/// Fits `shape`. A failure is thrown in the words of the component.
template <typename Fit> void Fitted(const wchar_t* source, const wchar_t* description, Fit&& fit) {
    const ErrorContext context{source, description};
    component::CatchingCodes("fit", [&] { RaisingGeometryErrors(context, fit); });
}

double DistanceFromCircle(const CMaCircle& circle, const CMaVector& point) {
    const CMaVector fromCentre = Difference(point, circle.GetCentre().To3DVector());
    const CMaVector normal = circle.GetNormal();
    const double fromAxis = (normal * fromCentre).Magnitude();
    return std::hypot(normal % fromCentre, fromAxis - circle.GetRadius());
}

/// The polar angles of the points on the circle, degrees from the first point.
std::vector<double> PolarAngles(const CMaCircle& circle, const CMaPointArray& points) {
    const CMaVector centre = circle.GetCentre().To3DVector();
    const CMaVector normal = circle.GetNormal();
    const CMaVector across = Normalised(normal * Difference(points[0].To3DVector(), centre));
    const CMaVector along = across * normal;
    return ResidualsOf(points,
                       [&](const CMaVector& point) {
                           const CMaVector fromCentre = Difference(point, centre);
                           return model::ToDegrees(std::atan2(fromCentre % across, fromCentre % along));
                       })
        .values;
}

constexpr int lengthDecimals = 4;
constexpr int residualDecimals = 6; // a small residual is tenths of a micrometre
constexpr int directionDecimals = 6;
constexpr int angleDecimals = 4;

std::vector<text::Table::Column> Columns(const std::vector<std::string>& titles) {
    std::vector<text::Table::Column> columns{{"", text::Table::Align::Left}};
    for (const std::string& title : titles) columns.push_back({title, text::Table::Align::Right});
    columns.push_back({"", text::Table::Align::Left});
    return columns;
}

} // namespace

double Residuals::Rms() const {
    double sum = 0.0;
    for (const double value : values) sum += value * value;
    return std::sqrt(sum / static_cast<double>(values.size()));
}

std::size_t Residuals::Worst() const {
    const auto size = [](double value) { return std::abs(value); };
    return static_cast<std::size_t>(std::ranges::max_element(values, {}, size) - values.begin());
}

CircleFit FitCircle(const CMaPointArray& points) {
    CMaCircle circle(1.0);
    Fitted(L"CMaCircle::Fit", L"Error Fitting points to a circle", [&] { circle.Fit(points, fitIterationLimit); });
    const auto distance = [&circle](const CMaVector& point) { return DistanceFromCircle(circle, point); };
    return {circle.GetCentre().To3DVector(), circle.GetNormal(), circle.GetRadius(), ResidualsOf(points, distance),
            fit::ArcCovered(PolarAngles(circle, points))};
}

FlatFit FitPlane(const CMaPointArray& points) {
    CMaPlane plane;
    Fitted(L"CMaPlane::Fit", L"Error Fitting points to a plane", [&] { plane.Fit(points); });
    const CMaVector point = plane.GetPoint().To3DVector();
    const CMaVector normal = WithLargestPositive(plane.GetNormal());
    return {point, normal, ResidualsOf(points, [&](const CMaVector& p) { return normal % Difference(p, point); })};
}

FlatFit FitLine(const CMaPointArray& points) {
    CMaLine line;
    Fitted(L"CMaLine::Fit", L"Error Fitting points to a line", [&] { line.Fit(points); });
    const CMaVector point = line.GetPoint().To3DVector();
    const CMaVector direction = WithLargestPositive(line.GetDirection());
    const auto distance = [&](const CMaVector& p) { return (direction * Difference(p, point)).Magnitude(); };
    return {point, direction, ResidualsOf(points, distance)};
}

CMaVector Facing(const CMaVector& direction, const CMaVector& reference) {
    return direction % reference < 0.0 ? direction * -1.0 : direction;
}

CMaVector WithLargestPositive(const CMaVector& direction) {
    const auto smaller = [](double left, double right) { return std::abs(left) < std::abs(right); };
    return std::max({direction[0], direction[1], direction[2]}, smaller) < 0.0 ? direction * -1.0 : direction;
}

text::Json PointJson(const CMaVector& point) { return text::PointJson(point[0], point[1], point[2]); }

text::Json DirectionJson(const CMaVector& direction) {
    return text::DirectionJson(direction[0], direction[1], direction[2]);
}

text::Json CircleJson(const CircleFit& fit) {
    return {{"centre", PointJson(fit.centre)},
            {"normal", DirectionJson(fit.normal)},
            {"radius", fit.radius},
            {"rms", fit.residuals.Rms()},
            {"residuals", fit.residuals.values}};
}

FitRows::FitRows(const std::vector<std::string>& titles) : table(Columns(titles)) {}

void FitRows::Add(const std::string& figure, const std::string& unit, const std::vector<std::string>& valueOfEachFit) {
    std::vector<std::string> cells{figure};
    cells.insert(cells.end(), valueOfEachFit.begin(), valueOfEachFit.end());
    cells.push_back(unit);
    table.AddRow(std::move(cells));
}

void FitRows::AddPoint(const std::string& name, const std::vector<CMaVector>& pointOfEachFit) {
    AddComponents(name, {"X", "Y", "Z"}, "mm", lengthDecimals, pointOfEachFit);
}

void FitRows::AddDirection(const std::string& name, const std::vector<CMaVector>& directionOfEachFit) {
    AddComponents(name, {"i", "j", "k"}, "", directionDecimals, directionOfEachFit);
}

void FitRows::AddComponents(const std::string& name, const char* const (&axes)[3], const std::string& unit,
                            int decimals, const std::vector<CMaVector>& vectorOfEachFit) {
    for (int i = 0; i < 3; ++i) {
        std::vector<std::string> values;
        values.reserve(vectorOfEachFit.size());
        for (const CMaVector& each : vectorOfEachFit) values.push_back(text::FixedText(each[i], decimals));
        Add(name + " " + axes[i], unit, values);
    }
}

void FitRows::AddResiduals(const std::vector<const Residuals*>& residualsOfEachFit) {
    std::vector<std::string> rms, largest, point;
    for (const Residuals* const each : residualsOfEachFit) {
        rms.push_back(text::FixedText(each->Rms(), residualDecimals));
        largest.push_back(text::FixedText(std::abs(each->values[each->Worst()]), residualDecimals));
        point.push_back(std::to_string(each->Worst() + 1));
    }
    Add("RMS of the residuals", "mm", rms);
    Add("largest residual", "mm", largest);
    Add("at point", "", point);
}

std::string FitRows::Length(double value) { return text::FixedText(value, lengthDecimals); }

std::string FitRows::Angle(double degrees) { return text::FixedText(degrees, angleDecimals); }

} // namespace qmv40::diagnosis
