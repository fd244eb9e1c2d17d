#include "tools/diagnosis/Capture.h"

#include "tools/text/Csv.h"

#include <array>

namespace qmv40::diagnosis {

namespace {

constexpr std::array<std::string_view, 5> captureColumns{"APosition", "BPosition", "XPosition", "YPosition",
                                                         "ZPosition"};

} // namespace

CaptureFile ReadCaptureFile(const std::string& fileName) {
    CaptureFile file{fileName, {}, {}};
    for (const auto& [line, row] : text::ReadNumberColumns(fileName, captureColumns)) {
        file.items.push_back({row[0], row[1], row[2], row[3], row[4]});
        file.lines.push_back(line);
    }
    return file;
}

std::vector<HeadAlignmentDataItem> ReadCapture(const std::string& fileName) { return ReadCaptureFile(fileName).items; }

std::vector<XYZData> ReadPoints(const std::string& fileName) {
    std::vector<XYZData> points;
    for (const auto& [line, row] : text::ReadNumberColumns(fileName, std::span(captureColumns).subspan<2>())) {
        points.push_back({row[0], row[1], row[2]});
    }
    return points;
}

} // namespace qmv40::diagnosis
