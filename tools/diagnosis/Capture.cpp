#include "tools/diagnosis/Capture.h"

#include "tools/text/Failures.h"

namespace qmv40::diagnosis {

CaptureFile ReadCaptureFile(const std::string& fileName) {
    const text::NumberTable table = text::ReadNumberTable(fileName, text::positionColumns);
    CaptureFile file{fileName, {}, {}, table.unit};
    for (const auto& [line, row] : table.rows) {
        file.items.push_back({row[0], row[1], row[2], row[3], row[4]});
        file.lines.push_back(line);
    }
    return file;
}

void RequireUnit(const CaptureFile& file, text::LengthUnit unit) {
    if (!file.unit || *file.unit == unit) return;
    const bool isInches = *file.unit == text::LengthUnit::Inch;
    throw text::InputError{file.name,
                           {},
                           std::string("the header gives the coordinates in ") +
                               (isInches ? "inches, and they are taken as millimetres: give --units in"
                                         : "millimetres, and they are taken as inches: give --units mm")};
}

std::vector<HeadAlignmentDataItem> ReadCapture(const std::string& fileName) { return ReadCaptureFile(fileName).items; }

std::vector<XYZData> ReadPoints(const std::string& fileName) {
    const text::NumberTable table = text::ReadNumberTable(fileName, text::coordinateColumns);
    RequireUnit({fileName, {}, {}, table.unit}, text::LengthUnit::Millimetre);
    std::vector<XYZData> points;
    points.reserve(table.rows.size());
    for (const auto& [line, row] : table.rows) {
        points.push_back({row[0], row[1], row[2]});
    }
    return points;
}

} // namespace qmv40::diagnosis
