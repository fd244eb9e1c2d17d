#pragma once

#include "tools/diagnosis/CaptureModel.h"

#include <optional>

namespace qmv40::diagnosis {

/// How the component finds the rotation from an A set: the sharp angle between the points' plane and machine Y, folded
/// into the quadrant that the points lie in as seen from the head centre. A point counts as being on the positive side
/// only when it is more than 10 beyond the centre; near the edge of a quadrant, or with the whole plane shifted by the
/// stylus, the wrong side is taken.

/// The rotation that the component would find for an ideal head (the model's errors have no say), captured at
/// `swivel` and the given tilts without error; degrees.
double FoldedRotation(const HeadModel& head, std::span<const double> tilts, double swivel);

/// What the component finds is the head's mounting angle.
bool FoldIsRight(const HeadModel& head, std::span<const double> tilts, double swivel);

/// The B position nearest to hand at which an A set with these tilts gives the right rotation, also when the head is
/// mounted a few degrees otherwise; the usual 45, -45, 135 and -135 first. Nothing when there is none.
std::optional<double> SwivelForASafeFold(const HeadModel& head, std::span<const double> tilts);

/// The same head with a straight stylus that reaches as far.
HeadModel WithStraightStylus(const HeadModel& head);

} // namespace qmv40::diagnosis
