#pragma once

#include "maths/CMaCircle.h"
#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "maths/CMaPointArray.h"
#include "tools/text/Json.h"
#include "tools/text/Table.h"

namespace qmv40::diagnosis {

/// Shapes fitted to points, with residuals. Lengths are in the unit of the points. A fit that is impossible is thrown
/// as ComponentError, in the words of the component.

/// One residual for each point, in the order of the points.
struct Residuals {
    std::vector<double> values;

    double Rms() const;
    /// The index of the point with the largest residual.
    std::size_t Worst() const;
};

/// Residuals are distances from the circle, never negative.
struct CircleFit {
    CMaVector centre;
    CMaVector normal; ///< of unit length; its sense is arbitrary
    double radius;
    Residuals residuals;
    double arcCovered; ///< degrees: a whole turn less the widest gap between neighbouring points
};

/// A plane, its direction being the normal, or a line. Residuals of a plane are distances along its normal, with their
/// sign; those of a line are distances from it, never negative.
struct FlatFit {
    CMaVector point;
    CMaVector direction;
    Residuals residuals;
};

CircleFit FitCircle(const CMaPointArray& points);
FlatFit FitPlane(const CMaPointArray& points);
FlatFit FitLine(const CMaPointArray& points);

/// `direction` or its opposite: the one whose angle with `reference` is at most 90 degrees.
CMaVector Facing(const CMaVector& direction, const CMaVector& reference);

/// `direction` or its opposite: the one whose largest component is positive.
CMaVector WithLargestPositive(const CMaVector& direction);

text::Json PointJson(const CMaVector& point);
text::Json DirectionJson(const CMaVector& direction);
/// Centre, normal, radius, RMS and residuals.
text::Json CircleJson(const CircleFit& fit);

/// Fits side by side for a person: one row for each figure, with its unit at the end.
class FitRows {
public:
    /// `titles`: one for each fit.
    explicit FitRows(const std::vector<std::string>& titles);

    void Add(const std::string& figure, const std::string& unit, const std::vector<std::string>& valueOfEachFit);
    void AddPoint(const std::string& name, const std::vector<CMaVector>& pointOfEachFit);
    void AddDirection(const std::string& name, const std::vector<CMaVector>& directionOfEachFit);
    /// RMS, the largest residual, and the number of its point, counted from 1.
    void AddResiduals(const std::vector<const Residuals*>& residualsOfEachFit);
    void Print(const text::Console& console) const { table.Print(console); }

    static std::string Length(double value);
    static std::string Angle(double degrees);

private:
    void AddComponents(const std::string& name, const char* const (&axes)[3], const std::string& unit, int decimals,
                       const std::vector<CMaVector>& vectorOfEachFit);

    text::Table table;
};

} // namespace qmv40::diagnosis
