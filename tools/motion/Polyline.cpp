#include "tools/motion/Polyline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qmv40::motion {

namespace {

/// Of one chord, radians. With eight chords for a whole turn a person still sees the direction of the arc.
constexpr double largestTurn = std::numbers::pi / 4.0;

/// The turn whose chord is off the circle by the tolerance: the sagitta is radius * (1 - cos(turn / 2)).
double TurnOfChord(double radius, double tolerance) {
    const double sine = std::sqrt(tolerance / (2.0 * radius));
    return sine < 1.0 ? std::min(largestTurn, 4.0 * std::asin(sine)) : largestTurn;
}

int ChordsOf(const model::Path& path, double tolerance) {
    const double sweep = std::abs(path.Degrees()) * std::numbers::pi / 180.0;
    if (!path.IsArc() || sweep == 0.0) return 1;
    return std::max(1, static_cast<int>(std::ceil(sweep / TurnOfChord(path.Radius(), tolerance))));
}

} // namespace

std::vector<model::Vector3> ChordEnds(const model::Path& path, double tolerance) {
    const int chords = ChordsOf(path, tolerance);
    std::vector<model::Vector3> ends;
    ends.reserve(static_cast<std::size_t>(chords));
    for (int i = 1; i <= chords; ++i) ends.push_back(path.At(static_cast<double>(i) / chords));
    return ends;
}

} // namespace qmv40::motion
