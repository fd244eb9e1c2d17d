#pragma once

#include "interface/Records.h"
#include "tools/text/Csv.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qmv40::diagnosis {

/// The captured points of one axis, and the lines of their file.
struct CaptureFile {
    std::string name;
    std::vector<HeadAlignmentDataItem> items;
    std::vector<std::size_t> lines;       ///< of each item, counted from 1
    std::optional<text::LengthUnit> unit; ///< named in the header; the coordinates are not converted
};

/// The captured points of one axis: a CSV file with the columns APosition, BPosition, XPosition, YPosition, ZPosition,
/// or A, B, X, Y, Z.
/// See Csv.h for what is accepted and what is refused.
CaptureFile ReadCaptureFile(const std::string& fileName);

/// Throws InputError for a capture whose header names another unit than `unit`.
void RequireUnit(const CaptureFile& file, text::LengthUnit unit);

/// The points without their lines.
std::vector<HeadAlignmentDataItem> ReadCapture(const std::string& fileName);

/// The points of a CSV file with the columns XPosition, YPosition, ZPosition, or X, Y, Z; a capture has them. Throws
/// InputError for a header in inches: results are printed in millimetres.
std::vector<XYZData> ReadPoints(const std::string& fileName);

} // namespace qmv40::diagnosis
