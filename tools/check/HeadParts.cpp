#include "tools/check/HeadParts.h"

#include "tools/model/Angles.h"

#include <algorithm>

namespace qmv40::check {

namespace {

using model::LeverSide;
using model::Vector3;
using obstacles::Axis;
using obstacles::MovingPart;

double Squared(double value) { return value * value; }

/// A bound of the second derivative, by the fraction, of the path of a place on the head: the machine follows its path,
/// and the place turns at the distance `reach` about the head's centre. Both angles change in proportion to the
/// fraction.
double BendOf(const motion::ExecutedMove& move, double reach) {
    const double turned =
        std::abs(move.after.angles.a - move.before.angles.a) + std::abs(move.after.angles.b - move.before.angles.b);
    return move.path.Radius() * Squared(model::ToRadians(move.path.Degrees())) +
           reach * Squared(model::ToRadians(turned));
}

/// A part that does not turn with the head. `from` and `to` are offsets from the head's centre.
MovingPart Upright(const motion::ExecutedMove& move, const Vector3& from, const Vector3& to, double diameter) {
    const auto at = [path = move.path, from, to](double fraction) -> Axis {
        const Vector3 centre = path.At(fraction);
        return {centre + from, centre + to};
    };
    return {at, BendOf(move, 0.0), diameter / 2.0};
}

/// The drive cup, which turns with A and B.
MovingPart Cup(const motion::ExecutedMove& move, const model::HeadModel& head, double diameter) {
    const auto at = [&move, &head](double fraction) -> Axis {
        const Vector3 cup = move.path.At(fraction) + head.DriveCup(move.AnglesAt(fraction));
        return {cup, cup};
    };
    return {at, BendOf(move, model::Length(head.DriveCup({0.0, 0.0}))), diameter / 2.0};
}

/// A part along the stylus, which points straight down at A = 0. `from` and `to` are distances from the head's centre.
MovingPart AlongStylus(const motion::ExecutedMove& move, const model::HeadModel& head, double from, double to,
                       double diameter) {
    const auto at = [&move, &head, from, to](double fraction) -> Axis {
        const Vector3 centre = move.path.At(fraction);
        const Vector3 down = head.TurnedWithHead({0.0, 0.0, -1.0}, move.AnglesAt(fraction));
        return {centre + from * down, centre + to * down};
    };
    return {at, BendOf(move, to), diameter / 2.0};
}

/// While a lever is pushed, its ball stays at the pole sphere and its pivot moves with the machine.
MovingPart Pushed(const motion::ExecutedMove& move, const model::HeadModel& head, const Vector3& pivot,
                  double diameter) {
    const auto at = [path = move.path, ball = head.PoleSphere(), pivot](double fraction) -> Axis {
        return {path.At(fraction) + pivot, ball};
    };
    return {at, BendOf(move, 0.0), diameter / 2.0};
}

MovingPart Lever(const motion::ExecutedMove& move, const model::HeadModel& head, LeverSide side, double diameter) {
    const Vector3 pivot = head.PlaceOnHead(head.LeverCentre(side));
    if (move.path.IsArc() && move.before.touchedBall == side) return Pushed(move, head, pivot, diameter);
    return Upright(move, pivot, head.PlaceOnHead(head.LeverBall(side, move.before.lever)), diameter);
}

} // namespace

std::vector<const char*> NamesOfParts(const PartSizes& sizes) {
    std::vector<const char*> names{"body", "joint", "drive cup", "plus lever", "minus lever"};
    if (sizes.stylus) names.insert(names.end(), {"stylus", "stylus tip"});
    return names;
}

std::vector<PartInMove> PartsOf(const motion::ExecutedMove& move, const model::HeadModel& head,
                                const PartSizes& sizes) {
    constexpr Vector3 centre{};
    const double bodyRadius = sizes.bodyDiameter.value_or(assumedBodyDiameter) / 2.0;
    const double jointDiameter = sizes.jointDiameter.value_or(assumedJointDiameter);
    const Vector3 lowerEnd{0.0, 0.0, bodyRadius};
    const Vector3 upperEnd{0.0, 0.0, std::max(bodyRadius, sizes.bodyLength - bodyRadius)};
    std::vector<PartInMove> parts{{Upright(move, lowerEnd, upperEnd, 2.0 * bodyRadius), !sizes.bodyDiameter},
                                  {Upright(move, centre, centre, jointDiameter), !sizes.jointDiameter},
                                  {Cup(move, head, sizes.cupDiameter), true},
                                  {Lever(move, head, LeverSide::Plus, sizes.leverDiameter), true},
                                  {Lever(move, head, LeverSide::Minus, sizes.leverDiameter), true}};
    if (sizes.stylus) {
        const auto& [length, diameter, tipDiameter] = *sizes.stylus;
        parts.push_back({AlongStylus(move, head, 0.0, length, diameter), false});
        parts.push_back({AlongStylus(move, head, length, length, tipDiameter), false});
    }
    return parts;
}

} // namespace qmv40::check
