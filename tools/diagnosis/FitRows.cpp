#include "tools/diagnosis/FitRows.h"

#include "tools/text/Numbers.h"

#include <cmath>

namespace qmv40::diagnosis {

namespace {

constexpr int lengthDecimals = 4;
constexpr int residualDecimals = 6; // the noise of a good machine is tenths of a micrometre
constexpr int directionDecimals = 6;
constexpr int angleDecimals = 4;

std::vector<text::Table::Column> Columns(const std::vector<std::string>& titles) {
    std::vector<text::Table::Column> columns{{"", text::Table::Align::Left}};
    for (const std::string& title : titles) columns.push_back({title, text::Table::Align::Right});
    columns.push_back({"", text::Table::Align::Left});
    return columns;
}

template <typename Figure>
std::vector<std::string> ForEachFit(const std::vector<const Residuals*>& residuals, Figure&& figure) {
    std::vector<std::string> texts;
    texts.reserve(residuals.size());
    for (const Residuals* const each : residuals) texts.push_back(figure(*each));
    return texts;
}

} // namespace

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
    Add("RMS of the residuals", "mm", ForEachFit(residualsOfEachFit, [](const Residuals& residuals) {
            return text::FixedText(residuals.Rms(), residualDecimals);
        }));
    Add("largest residual", "mm", ForEachFit(residualsOfEachFit, [](const Residuals& residuals) {
            return text::FixedText(std::abs(residuals.values[residuals.Worst()]), residualDecimals);
        }));
    Add("at point", "", ForEachFit(residualsOfEachFit, [](const Residuals& residuals) {
            return std::to_string(residuals.Worst() + 1);
        }));
}

std::string FitRows::Length(double value) { return text::FixedText(value, lengthDecimals); }

std::string FitRows::Angle(double degrees) { return text::FixedText(degrees, angleDecimals); }

} // namespace qmv40::diagnosis
