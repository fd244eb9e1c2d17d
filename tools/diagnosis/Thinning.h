#pragma once

#include "tools/diagnosis/MistakeSearch.h"

namespace qmv40::diagnosis {

/// A part of a large capture that is searched instead of all points: points spread evenly over each set, the first and
/// the last included.
class Thinning {
public:
    explicit Thinning(const captures::CapturedSets& theSets);

    bool IsThinned() const { return kept.size() < sets.points.size(); }
    captures::CapturedSets Thinned() const;
    /// The findings of the part, extended to all points. An error that begins or ends between two points of the part
    /// begins or ends at the point where it explains most. Points that are far off and not in the part become errors of
    /// their own.
    HeadExplained OfAll(HeadExplained ofPart) const;

private:
    fit::ModelError OfAll(const fit::ModelError& error, const fit::HeadModel& model) const;
    std::size_t BestEnd(std::size_t end, const fit::ModelError& error, bool isFirst, const fit::HeadModel& model) const;
    void AddPointsOff(fit::HeadFit& fit) const;

    const captures::CapturedSets& sets;
    std::vector<std::size_t> kept;
    std::size_t keptOfASet = 0;
};

} // namespace qmv40::diagnosis
