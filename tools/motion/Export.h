#pragma once

#include "tools/motion/Program.h"

#include <string>
#include <vector>

/// Programs as texts for a machine's own controller. All coordinates are machine positions (no stylus tip in force), in
/// millimetres and machine coordinates.

namespace qmv40::motion {

enum class Arcs {
    Native, ///< arcs of the dialect when the axis of an arc is a machine axis, otherwise chords
    Chords
};

struct ExportOptions {
    double chord; ///< mm; the largest distance of a chord from its arc
    double feed;  ///< mm/min
    Arcs arcs = Arcs::Native;
    std::vector<std::string> heading; ///< lines of comment: what the file is, and its inputs
};

/// The tool recognises its own files by this text, which is in the first line after the comment sign of the dialect.
inline constexpr const char* exportMark = "qmv40 export: ";

/// CSV: Plan,Move,Name,X,Y,Z. A row for each straight move's end and for each chord's end of an arc; the way to a
/// plan's start is move 0. The heading is not in it: see PointsHeading.
std::string PointsText(std::span<const Step> program, const ExportOptions& options);
/// The heading as comment lines of CSV, for the place before the column names.
std::string PointsHeading(const ExportOptions& options);

// The following texts begin with their heading
std::string GcodeText(std::span<const Step> program, const ExportOptions& options);
std::string DmisText(std::span<const Step> program, const ExportOptions& options);
std::string IppDmeText(std::span<const Step> program, const ExportOptions& options);

// Shared by the dialects

/// "plan 2, move 3 UnLock" or "way to plan 2"
std::string NameOf(const Step& step);
/// Seven decimals: half of the last is 5e-8 mm.
std::string CoordinateText(double millimetres);

} // namespace qmv40::motion
