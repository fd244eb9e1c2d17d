#pragma once

#include "interface/Records.h"

#include <string>
#include <vector>

/// The captured points of one axis: a CSV file with the columns APosition, BPosition, XPosition, YPosition, ZPosition.
/// See Csv.h for what is accepted and what is refused.
std::vector<HeadAlignmentDataItem> ReadCapture(const std::string& fileName);

/// The points of a CSV file with the columns XPosition, YPosition, ZPosition; a capture will do.
std::vector<XYZData> ReadPoints(const std::string& fileName);
