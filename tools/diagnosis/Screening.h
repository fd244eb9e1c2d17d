#pragma once

#include "tools/diagnosis/fit/HeadFit.h"
#include "tools/diagnosis/fit/HeadSums.h"

#include <array>
#include <span>
#include <vector>

namespace qmv40::diagnosis {

/// An explanation to be tried: errors to be added to a model, and the sum of squares that they probably leave.
struct Candidate {
    std::vector<fit::ModelError> errors;
    double likelySum = 0.0;  ///< of squares
    double alternatives = 1; ///< among how many of its kind it was chosen
    fit::HeadModel start;    ///< the best head with it
    double doubt = 1.0;      ///< factor of its p-value; above 1 for errors that noise imitates easily

    std::size_t Unknowns() const;
};

/// The candidates whose sum of squares follows from sums of the points, so that each takes constant time: wrong angles,
/// points off their places, everything moved from one point on, locked points. `current`: what was found so far.
/// `unlocking`: see SearchMistakes.
std::vector<Candidate> ScreenedCandidates(const captures::CapturedSets& sets, const fit::HeadFit& current,
                                          const model::Vector3& unlocking);

/// The intervals of points that a change between two points can concern, when it happens once and lasts, and either set
/// was captured first. An interval that ends within a set holds the points before the change, and one that begins
/// within a set those after it. The A set stands for a change between the sets.
struct Interval {
    std::size_t first, last;
};
std::vector<Interval> ChangesBetweenPoints(const captures::CapturedSets& sets);

} // namespace qmv40::diagnosis
