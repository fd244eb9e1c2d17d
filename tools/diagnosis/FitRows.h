#pragma once

#include "tools/diagnosis/Fits.h"
#include "tools/text/Table.h"

#include <string>
#include <vector>

namespace qmv40::diagnosis {

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
