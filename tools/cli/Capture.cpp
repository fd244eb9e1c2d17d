#include "cli/Capture.h"

#include "cli/Csv.h"

#include <array>

namespace {

constexpr std::array<std::string_view, 5> captureColumns{"APosition", "BPosition", "XPosition", "YPosition",
                                                         "ZPosition"};

} // namespace

std::vector<HeadAlignmentDataItem> ReadCapture(const std::string& fileName) {
    std::vector<HeadAlignmentDataItem> items;
    for (const std::vector<double>& row : ReadNumberColumns(fileName, captureColumns)) {
        items.push_back({row[0], row[1], row[2], row[3], row[4]});
    }
    return items;
}

std::vector<XYZData> ReadPoints(const std::string& fileName) {
    std::vector<XYZData> points;
    for (const std::vector<double>& row : ReadNumberColumns(fileName, std::span(captureColumns).subspan<2>())) {
        points.push_back({row[0], row[1], row[2]});
    }
    return points;
}
