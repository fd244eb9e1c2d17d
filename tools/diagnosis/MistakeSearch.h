#pragma once

#include "tools/diagnosis/HeadFit.h"
#include "tools/diagnosis/Rewriting.h"

namespace qmv40::diagnosis {

/// The whole head fitted to a capture, with the mistakes that the points call for.
struct HeadExplained {
    HeadFit plain;       ///< seven unknowns, as if everything were right
    HeadFit fit;         ///< with the errors in the order in which they were found; the same as `plain` without any
    Rewriting rewriting; ///< the capture as a whole is to be read otherwise; `fit` is then of the rewritten one
};

/// Looks for what makes the points leave the places that their angles give them. Explanations compete by what they
/// leave unexplained: each has a few unknowns, and each further unknown, and each further place at which it could have
/// been, counts against it. In each round the best one is taken, until none explains more than chance would at
/// `thresholds::falseAlarmRate`.
///
/// Tried are:
/// - of one point, of all points of a set up to or from one, and of a whole set: an angle that was another one, by
/// whole
///   index steps or by anything; the head locked instead of unlocked. Two points with each other's angle.
/// - one point off its place
/// - from one point on, whichever set was captured first: the sphere or the machine's zero moved, the head turned on
/// its
///   mount, the head tilted, another stylus; a drift
/// - of the head: a leaning B axis, axes that are not square, axes that do not meet
/// - of whole columns: the rewritings
///
/// Of a capture of many points a part is searched, and what is found there is looked at in all of them: time grows in
/// proportion to the points. `unlocking`: the shift that was taken off the points to bring them to the locked position.
HeadExplained ExplainHead(const CapturedSets& sets, const model::Vector3& unlocking);

} // namespace qmv40::diagnosis
