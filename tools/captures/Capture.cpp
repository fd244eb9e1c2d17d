#include "tools/captures/Capture.h"

#include "tools/text/Failures.h"

namespace qmv40::captures {

namespace {

/// The rows of a file whose header gives this unit or none.
std::vector<text::NumberRow> RowsIn(text::LengthUnit unit, const std::string& fileName,
                                    std::span<const text::Column> columns) {
    text::NumberTable table = text::ReadNumberTable(fileName, columns);
    if (!table.unit || *table.unit == unit) return std::move(table.rows);
    throw text::InputError{fileName,
                           {},
                           std::string("the header gives the coordinates in ") +
                               (*table.unit == text::LengthUnit::Inch
                                    ? "inches, and they are taken as millimetres: give --units in"
                                    : "millimetres, and they are taken as inches: give --units mm")};
}

} // namespace

std::string CaptureFiles::NameOf(std::size_t point) const {
    return FileOf(point).name + ":" + std::to_string(LineOf(point));
}

double MillimetresIn(text::LengthUnit unit) { return unit == text::LengthUnit::Inch ? 25.4 : 1.0; }

CaptureFile ReadCapture(const std::string& fileName, text::LengthUnit unit) {
    CaptureFile file{fileName, {}, {}};
    const double scale = MillimetresIn(unit);
    for (const auto& [line, row] : RowsIn(unit, fileName, text::positionColumns)) {
        file.items.push_back({row[0], row[1], row[2] * scale, row[3] * scale, row[4] * scale});
        file.lines.push_back(line);
    }
    return file;
}

std::vector<model::Vector3> ReadPoints(const std::string& fileName, text::LengthUnit unit) {
    std::vector<model::Vector3> points;
    for (const auto& [line, row] : RowsIn(unit, fileName, text::coordinateColumns)) {
        points.push_back(MillimetresIn(unit) * model::Vector3{row[0], row[1], row[2]});
    }
    return points;
}

CapturedSets SetsOf(std::span<const HeadAlignmentDataItem> aAxis, std::span<const HeadAlignmentDataItem> bAxis,
                    const model::Vector3& unlocking) {
    CapturedSets sets{{}, aAxis.size()};
    sets.points.reserve(aAxis.size() + bAxis.size());
    for (const auto set : {aAxis, bAxis}) {
        for (const auto& [a, b, x, y, z] : set) sets.points.push_back({a, b, model::Vector3{x, y, z} - unlocking});
    }
    return sets;
}

} // namespace qmv40::captures
