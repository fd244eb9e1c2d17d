#include "tools/report/Fits.h"

#include "maths/CMaCircle.h"
#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "maths/RaisingGeometryErrors.h"
#include "tools/component/ComponentError.h"
#include "tools/text/Numbers.h"

#include <algorithm>

namespace qmv40::report {

namespace {

using diagnosis::fit::AxisCircle;
using diagnosis::fit::PointArrayOf;
using diagnosis::fit::VectorOf;
using model::Vector3;

/// Fits `shape`. A failure is thrown in the words of the component.
template <typename Fit> auto Fitted(const wchar_t* source, const wchar_t* description, Fit&& fit) {
    const ErrorContext context{source, description};
    return component::CatchingCodes("fit", [&] { return RaisingGeometryErrors(context, fit); });
}

template <typename Measure> Residuals Measured(Points points, Measure&& measure) {
    Residuals residuals;
    residuals.values.reserve(points.size());
    for (const Vector3& point : points) residuals.values.push_back(measure(point));
    return residuals;
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

AxisCircle FitCircle(Points points) {
    return Fitted(L"CMaCircle::Fit", L"Error Fitting points to a circle",
                  [&] { return diagnosis::fit::AxisCircleThrough(points); });
}

FlatFit FitPlane(Points points) {
    CMaPlane plane;
    Fitted(L"CMaPlane::Fit", L"Error Fitting points to a plane", [&] { plane.Fit(PointArrayOf(points)); });
    const Vector3 point = VectorOf(plane.GetPoint().To3DVector());
    const Vector3 normal = WithLargestPositive(VectorOf(plane.GetNormal()));
    return {point, normal, Measured(points, [&](const Vector3& p) { return model::Dot(normal, p - point); })};
}

FlatFit FitLine(Points points) {
    CMaLine line;
    Fitted(L"CMaLine::Fit", L"Error Fitting points to a line", [&] { line.Fit(PointArrayOf(points)); });
    const Vector3 point = VectorOf(line.GetPoint().To3DVector());
    const Vector3 direction = WithLargestPositive(VectorOf(line.GetDirection()));
    const auto distance = [&](const Vector3& p) { return model::Length(model::Cross(direction, p - point)); };
    return {point, direction, Measured(points, distance)};
}

Vector3 Facing(const Vector3& direction, const Vector3& reference) {
    return model::Dot(direction, reference) < 0.0 ? -direction : direction;
}

Vector3 WithLargestPositive(const Vector3& direction) {
    const auto smaller = [](double left, double right) { return std::abs(left) < std::abs(right); };
    return std::max({direction.x, direction.y, direction.z}, smaller) < 0.0 ? -direction : direction;
}

ReportedCircle::ReportedCircle(AxisCircle theCircle, const Vector3& theNormal)
    : circle(std::move(theCircle)), normal(theNormal) {
    for (const auto& point : circle.points) residuals.values.push_back(std::hypot(point.radial, point.outOfPlane));
}

text::Json ReportedCircle::Document() const {
    return {{"centre", text::PointJson(circle.centre)},
            {"normal", text::DirectionJson(normal)},
            {"radius", circle.radius},
            {"rms", residuals.Rms()},
            {"residuals", residuals.values}};
}

FitRows::FitRows(const std::vector<std::string>& titles) : table(Columns(titles)) {}

void FitRows::Add(const std::string& figure, const std::string& unit, const std::vector<std::string>& valueOfEachFit) {
    std::vector<std::string> cells{figure};
    cells.insert(cells.end(), valueOfEachFit.begin(), valueOfEachFit.end());
    cells.push_back(unit);
    table.AddRow(std::move(cells));
}

void FitRows::AddPoint(const std::string& name, const std::vector<Vector3>& pointOfEachFit) {
    AddComponents(name, {"X", "Y", "Z"}, "mm", lengthDecimals, pointOfEachFit);
}

void FitRows::AddDirection(const std::string& name, const std::vector<Vector3>& directionOfEachFit) {
    AddComponents(name, {"i", "j", "k"}, "", directionDecimals, directionOfEachFit);
}

void FitRows::AddComponents(const std::string& name, const char* const (&axes)[3], const std::string& unit,
                            int decimals, const std::vector<Vector3>& vectorOfEachFit) {
    for (std::size_t i = 0; i < 3; ++i) {
        std::vector<std::string> values;
        values.reserve(vectorOfEachFit.size());
        for (const Vector3& each : vectorOfEachFit) values.push_back(text::FixedText(each[i], decimals));
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

} // namespace qmv40::report
