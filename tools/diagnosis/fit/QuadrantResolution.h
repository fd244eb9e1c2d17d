#pragma once

#include "tools/diagnosis/fit/CaptureModel.h"

#include <optional>

namespace qmv40::diagnosis::fit {

/// How the component finds the rotation from an A set: it takes the acute angle between the points' plane and machine
/// Y, and resolves it by the quadrant in which the points lie as seen from the head centre. A point counts as being on
/// the positive side only when it is more than 10 mm beyond the centre. Near the edge of a quadrant, or when the stylus
/// shifts the whole plane, the wrong side is taken.

/// The rotation that the component would find for this head without its errors, captured at `swivel` and the given
/// tilts without noise; degrees.
double RotationByQuadrant(const HeadModel& head, std::span<const double> tilts, double swivel);

/// True when that rotation is the head's mounting angle.
bool QuadrantIsRight(const HeadModel& head, std::span<const double> tilts, double swivel);

/// The B position at which an A set with these tilts gives the right rotation, also when the mounting differs by up to
/// 5 degrees. The index positions from -165 to 165 are tried, the usual 45, -45, 135 and -135 first. Empty when none of
/// them is right.
std::optional<double> SwivelWithSafeQuadrant(const HeadModel& head, std::span<const double> tilts);

/// The same head with a straight stylus of equal length.
HeadModel WithStraightStylus(const HeadModel& head);

} // namespace qmv40::diagnosis::fit
