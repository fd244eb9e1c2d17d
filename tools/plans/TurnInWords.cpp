#include "tools/plans/TurnInWords.h"

#include "tools/text/Numbers.h"

#include <cmath>

namespace qmv40::plans {

namespace {

constexpr int angleDecimals = 4;
constexpr int directionDecimals = 6;
/// The sine of half a degree. An axis that is tilted by less is called vertical, or horizontal.
constexpr double vertical = 0.0087;
/// mm. A shorter difference has no direction.
constexpr double shortest = 0.001;

const char* Sense(bool isClockwise) { return isClockwise ? "clockwise" : "counter-clockwise"; }

std::string SeenFromTheTip(const ArcData& arc) {
    return std::string(Sense(arc.RotationAngle > 0.0)) + ", seen from the tip of (" +
           text::FixedText(arc.iRotationVector, directionDecimals) + ", " +
           text::FixedText(arc.jRotationVector, directionDecimals) + ", " +
           text::FixedText(arc.kRotationVector, directionDecimals) + ")";
}

std::string HeightWords(const model::Path& path) {
    const model::Path::Range heights = path.RangeAlong({0.0, 0.0, 1.0});
    if (heights.largest > std::max(path.Start().z, path.End().z) + shortest) return "up and over";
    if (heights.smallest < std::min(path.Start().z, path.End().z) - shortest) return "down and under";
    return path.End().z > path.Start().z ? "upwards" : "downwards";
}

/// The machine axis that a direction follows, or the two axes between which it lies.
std::string Towards(const model::Vector3& way) {
    constexpr double tangentOfHalfAnEighth = 0.4142135623730951;
    const double x = std::abs(way.x);
    const double y = std::abs(way.y);
    if (std::hypot(x, y) < shortest) return "";
    const std::string alongX = way.x > 0.0 ? "+X" : "-X";
    const std::string alongY = way.y > 0.0 ? "+Y" : "-Y";
    if (y < tangentOfHalfAnEighth * x) return ", towards " + alongX;
    if (x < tangentOfHalfAnEighth * y) return ", towards " + alongY;
    return ", towards " + alongX + " and " + alongY;
}

std::string Way(const ArcData& arc, const std::optional<model::Vector3>& start) {
    const model::Vector3 axis = AxisOf(arc);
    if (std::hypot(axis.x, axis.y) <= vertical) {
        return std::string(Sense((arc.RotationAngle > 0.0) == (axis.z > 0.0))) + ", seen from above";
    }
    // About an axis between vertical and horizontal, an arc has no simple direction in words.
    if (!start || std::abs(axis.z) > vertical) return SeenFromTheTip(arc);
    const model::Path path = PathOf({MoveId::UnLock, arc}, *start); // any move: only the arc counts
    return HeightWords(path) + Towards(path.End() - path.Start());
}

} // namespace

std::string TurnInWords(const ArcData& arc, const std::optional<model::Vector3>& start) {
    if (arc.RotationAngle == 0.0) return "no turn: 0 deg";
    if (std::isnan(arc.RotationAngle)) return "the angle is not a number: do not run this move";
    return "turn " + text::FixedText(std::abs(arc.RotationAngle), angleDecimals) + " deg " + Way(arc, start);
}

} // namespace qmv40::plans
