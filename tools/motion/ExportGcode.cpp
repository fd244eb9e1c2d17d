#include "tools/motion/Export.h"
#include "tools/motion/Polyline.h"
#include "tools/text/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace qmv40::motion {

namespace {

using model::Path;
using model::Vector3;

/// A plane of G-code's arcs, given by the machine axis perpendicular to it.
struct Plane {
    Vector3 axis;
    const char* word;                  ///< selects the plane
    std::array<const char*, 2> centre; ///< words for the offset of an arc's centre from its start
    std::array<Vector3, 2> directions; ///< of these two words
};

constexpr std::array planes{Plane{{0, 0, 1}, "G17", {"I", "J"}, {{{1, 0, 0}, {0, 1, 0}}}},
                            Plane{{0, 1, 0}, "G18", {"I", "K"}, {{{1, 0, 0}, {0, 0, 1}}}},
                            Plane{{1, 0, 0}, "G19", {"J", "K"}, {{{0, 1, 0}, {0, 0, 1}}}}};

/// The largest sine of the angle between the axis of an arc and a machine axis. At 40 mm from the axis, which is more
/// than the radius of any arc, the points are then at most 4e-8 mm off.
constexpr double largestTilt = 1e-9;
/// mm. A shorter arc is written as chords: when its start and its end are written alike, a controller makes a full
/// turn.
constexpr double shortestArc = 0.01;
/// Degrees; a longer arc is divided. When its ends are rounded, an arc of half a turn or more can be taken for
/// another arc; 120 is well below.
constexpr double largestArc = 120.0;

/// A comment ends at the first closing parenthesis.
std::string GcodeComment(const std::string& text) {
    std::string inside = text;
    std::ranges::replace(inside, '(', '[');
    std::ranges::replace(inside, ')', ']');
    return "(" + inside + ")\n";
}

std::string Coordinates(const Vector3& point) {
    return " X" + CoordinateText(point.x) + " Y" + CoordinateText(point.y) + " Z" + CoordinateText(point.z);
}

class Writer {
public:
    explicit Writer(const ExportOptions& theOptions) : options(theOptions) {}

    std::string Text(std::span<const Step> program) && {
        WriteStart();
        for (const Step& step : program) {
            text += GcodeComment(NameOf(step));
            WriteStep(step.path);
        }
        return text + "M2\n";
    }

private:
    bool UsesArcs() const { return options.arcs == Arcs::Native; }

    void WriteStart() {
        text += GcodeComment(std::string(exportMark) + "gcode");
        for (const std::string& line : options.heading) text += GcodeComment(line);
        text += GcodeComment("Assumed: RS-274 as LinuxCNC reads it");
        text += "G21 G90 G94 G17 (millimetres, absolute coordinates, feed in mm/min)\n"
                "G40 G49 G80 (no cutter or tool tip compensation, no tool length, no cycle)\n"
                "G61 (every point is reached: no corner is rounded)\n";
        text += UsesArcs() ? ArcStart()
                           : std::string("(every move is made in machine coordinates, G53: no offset counts)\n");
        text += "F" + text::ExactText(options.feed) + "\n";
    }

    /// G53 is possible with straight moves only, so arcs are made under a work offset that a person must know to be
    /// zero.
    static std::string ArcStart() {
        return "G54 G91.1 (work offset 1; centres of arcs are given from their starts)\n"
               "(CONFIRM: G54 and every other offset, G92 too, is zero and not turned)\n"
               "(CONFIRM: G2 turns clockwise, seen from the tip of the axis upright on its plane)\n"
               "M0 (stops here until a person has confirmed both)\n";
    }

    void WriteStep(const Path& path) {
        const std::optional<Plane> plane = PlaneOf(path);
        if (plane) return WriteArcs(path, *plane);
        for (const Vector3& end : ChordEnds(path, options.chord)) WriteStraight(end);
    }

    void WriteStraight(const Vector3& end) { text += (UsesArcs() ? "G1" : "G53 G1") + Coordinates(end) + "\n"; }

    std::optional<Plane> PlaneOf(const Path& path) const {
        if (!UsesArcs() || !path.IsArc() || path.Length() < shortestArc) return std::nullopt;
        const Vector3 axis = path.Axis();
        for (const Plane& plane : planes) {
            if (model::Length(model::Cross(axis, plane.axis)) <= largestTilt) return plane;
        }
        return std::nullopt;
    }

    void WriteArcs(const Path& path, const Plane& plane) {
        if (std::string(plane.word) != currentPlane) text += std::string(plane.word) + "\n";
        currentPlane = plane.word;
        const bool isCounterClockwise = path.Degrees() * model::Dot(path.Axis(), plane.axis) > 0.0;
        const int parts = static_cast<int>(std::ceil(std::abs(path.Degrees()) / largestArc));
        for (int i = 0; i < parts; ++i) {
            const Vector3 start = path.At(static_cast<double>(i) / parts);
            const Vector3 toCentre = path.Centre() - start;
            text += (isCounterClockwise ? "G3" : "G2") + Coordinates(path.At(static_cast<double>(i + 1) / parts));
            for (std::size_t k = 0; k < plane.centre.size(); ++k) {
                text += std::string(" ") + plane.centre[k] + CoordinateText(model::Dot(toCentre, plane.directions[k]));
            }
            text += "\n";
        }
    }

    const ExportOptions& options;
    std::string text;
    std::string currentPlane = "G17";
};

} // namespace

std::string GcodeText(std::span<const Step> program, const ExportOptions& options) {
    return Writer(options).Text(program);
}

} // namespace qmv40::motion
