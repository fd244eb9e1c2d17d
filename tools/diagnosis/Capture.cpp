#include "tools/diagnosis/Capture.h"

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

std::vector<HeadAlignmentDataItem> ReadCapture(const std::string& fileName) { return ReadCaptureFile(fileName).items; }

std::vector<XYZData> ReadPoints(const std::string& fileName) {
    std::vector<XYZData> points;
    for (const auto& [line, row] : text::ReadNumberTable(fileName, text::coordinateColumns).rows) {
        points.push_back({row[0], row[1], row[2]});
    }
    return points;
}

} // namespace qmv40::diagnosis
