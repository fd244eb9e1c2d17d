#pragma once

#include "tools/diagnosis/HeadFit.h"
#include "tools/diagnosis/HeadSums.h"

#include <array>
#include <span>
#include <vector>

namespace qmv40::diagnosis {

/// An explanation that is worth trying: errors that come on top of a model, and what they are likely to leave.
struct Candidate {
    std::vector<ModelError> errors;
    double likelySum = 0.0;  ///< of squares
    double alternatives = 1; ///< among how many of its kind it was chosen
    HeadModel start;         ///< the best head with it

    std::size_t Unknowns() const;
};

/// The candidates whose sum of squares follows from sums of the points, so that each takes the same time however many
/// points it concerns: wrong angles, points off their places, everything moved from a point on, locked points.
/// `current`: what was found so far. `unlocking`: see ExplainHead.
std::vector<Candidate> ScreenedCandidates(const CapturedSets& sets, const HeadFit& current,
                                          const model::Vector3& unlocking);

/// The intervals of points that something concerns which changed once, between two points, and stayed so: whichever set
/// was captured first. An interval from 0 on concerns the points before the change.
struct Interval {
    std::size_t first, last;
};
std::vector<Interval> ChangesBetweenPoints(const CapturedSets& sets);

} // namespace qmv40::diagnosis
