#pragma once

#include "tools/diagnosis/fit/AxisCircle.h"
#include "tools/text/Json.h"
#include "tools/text/Table.h"

#include <span>
#include <string>
#include <vector>

namespace qmv40::report {

/// Shapes fitted to points, with residuals. Lengths are in the unit of the points. A fit that is impossible is thrown
/// as ComponentError, in the words of the component.

using Points = std::span<const model::Vector3>;

/// One residual for each point, in the order of the points.
struct Residuals {
    std::vector<double> values;

    double Rms() const;
    /// The index of the point with the largest residual.
    std::size_t Worst() const;
};

/// A plane, its direction being the normal, or a line. Residuals of a plane are distances along its normal, with their
/// sign; those of a line are distances from it, never negative.
struct FlatFit {
    model::Vector3 point;
    model::Vector3 direction; ///< the one whose largest component is positive
    Residuals residuals;
};

diagnosis::fit::AxisCircle FitCircle(Points points);
FlatFit FitPlane(Points points);
FlatFit FitLine(Points points);

/// `direction` or its opposite: the one whose angle with `reference` is at most 90 degrees.
model::Vector3 Facing(const model::Vector3& direction, const model::Vector3& reference);

/// `direction` or its opposite: the one whose largest component is positive.
model::Vector3 WithLargestPositive(const model::Vector3& direction);

/// A circle as it is reported. Residuals are distances from it, never negative.
struct ReportedCircle {
    /// `theNormal`: the normal of the circle, or its opposite.
    ReportedCircle(diagnosis::fit::AxisCircle theCircle, const model::Vector3& theNormal);

    diagnosis::fit::AxisCircle circle;
    model::Vector3 normal;
    Residuals residuals;

    /// Centre, normal, radius, RMS and residuals.
    text::Json Document() const;
};

/// Fits side by side for a person: one row for each figure, with its unit at the end.
class FitRows {
public:
    /// `titles`: one for each fit.
    explicit FitRows(const std::vector<std::string>& titles);

    void Add(const std::string& figure, const std::string& unit, const std::vector<std::string>& valueOfEachFit);
    void AddPoint(const std::string& name, const std::vector<model::Vector3>& pointOfEachFit);
    void AddDirection(const std::string& name, const std::vector<model::Vector3>& directionOfEachFit);
    /// RMS, the largest residual, and the number of its point, counted from 1.
    void AddResiduals(const std::vector<const Residuals*>& residualsOfEachFit);
    void Print(const text::Console& console) const { table.Print(console); }

    static std::string Length(double value);
    static std::string Angle(double degrees);

private:
    void AddComponents(const std::string& name, const char* const (&axes)[3], const std::string& unit, int decimals,
                       const std::vector<model::Vector3>& vectorOfEachFit);

    text::Table table;
};

} // namespace qmv40::report
