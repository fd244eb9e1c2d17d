#pragma once

#include "tools/motion/Program.h"

#include <string>
#include <vector>

/// Programs as texts for a machine's own controller. All coordinates are the machine's position, in millimetres and
/// machine coordinates, as it is without a stylus tip in force.

namespace qmv40::motion {

enum class Arcs {
    Native, ///< the dialect's own arcs where the axis of an arc is one of the machine's; else chords
    Chords
};

struct ExportOptions {
    double chord; ///< mm; how far a chord may leave its arc
    double feed;  ///< mm/min
    Arcs arcs = Arcs::Native;
    std::vector<std::string> heading; ///< what the file is and what it was made of: each a line of comment
};

/// The first line of a file, behind the dialect's sign of comment, by which a file of this tool is known.
inline constexpr const char* exportMark = "qmv40 export: ";

/// CSV: Plan,Move,Name,X,Y,Z. A row for each straight move's end and for each chord's end of an arc; the way to a
/// plan's start is move 0. The heading is not in it: see PointsHeading.
std::string PointsText(std::span<const Step> program, const ExportOptions& options);
/// The heading as CSV's lines of comment, which stand before the columns' names.
std::string PointsHeading(const ExportOptions& options);

// With their headings
std::string GcodeText(std::span<const Step> program, const ExportOptions& options);
std::string DmisText(std::span<const Step> program, const ExportOptions& options);
std::string IppDmeText(std::span<const Step> program, const ExportOptions& options);

// For the dialects

/// "plan 2, move 3 UnLock" or "way to plan 2"
std::string NameOf(const Step& step);
/// Seven decimals: half of the last is 5e-8 mm.
std::string CoordinateText(double millimetres);

} // namespace qmv40::motion
