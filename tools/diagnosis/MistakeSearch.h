#pragma once

#include "tools/diagnosis/Rewriting.h"
#include "tools/diagnosis/fit/HeadFit.h"

namespace qmv40::diagnosis {

/// The whole head fitted to a capture, with the mistakes that explain its points.
struct HeadExplained {
    fit::HeadFit plain; ///< seven unknowns, without errors
    fit::HeadFit fit;   ///< with the errors in the order in which they were found; equal to `plain` without errors
    std::optional<Rewriting> rewriting; ///< of whole columns; `fit` is then that of the rewritten capture
};

/// Looks for mistakes that explain why points are not at the places that their angles give them. Explanations compete:
/// the best one leaves the smallest sum of squares, with a penalty for each of its unknowns and for each place at which
/// it could have been. Every round takes the best one, until none explains more than chance would at
/// `thresholds::falseAlarmRate`, or six rounds are over.
///
/// The explanations are:
/// - one point, the points of a set up to one or from one on, or a whole set: a wrong angle, by whole index steps or
///   by any amount
/// - one point, a run of points of a set, a whole set, or all points before or after a change: captured locked instead
///   of unlocked
/// - two points of a set: each has the other's angle
/// - one point, or two of a capture of at most 80 points: off their places
/// - all points from one on, with either set first: the sphere or the machine's zero moved; the head turned on its
///   mount, or tilted; another stylus
/// - the whole capture, with either set first: a drift of the points, of the mounting angle, of the head's tilt, or of
///   the stylus tip
/// - the head: its B axis leans, its axes are not square, its axes do not meet
/// - whole columns: the rewritings, which are tried after the rounds
///
/// The time grows with the square of the number of points. `unlocking`: the shift that was subtracted from the points
/// to bring them to the locked position.
HeadExplained SearchMistakes(const captures::CapturedSets& sets, const model::Vector3& unlocking);

} // namespace qmv40::diagnosis
