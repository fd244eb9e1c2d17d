#pragma once

#include "tools/diagnosis/HeadFit.h"

namespace qmv40::diagnosis {

/// The whole head fitted to a capture, with the errors that the points call for.
struct HeadExplained {
    HeadFit plain; ///< seven unknowns, as if everything were right
    HeadFit fit;   ///< with the errors in the order in which they were found; the same as `plain` without any
};

/// Looks for what makes the points leave the places that their angles give them: in each round the one error that
/// explains most is taken, until none explains more than chance would at `thresholds::falseAlarmRate`.
///
/// Tried are, in each set: an angle written wrong for one point, or for all points up to or from one of them; a point
/// that stands off its place; between the sets: angles at which one was held that do not go with the other's, a pole
/// that moved; of the head: a leaning B axis, axes that are not square, axes that do not meet.
HeadExplained ExplainHead(const CapturedSets& sets);

} // namespace qmv40::diagnosis
