#pragma once

#include "tools/diagnosis/MistakeSearch.h"

namespace qmv40::diagnosis {

/// A part of a large capture that is searched instead of all points: points spread evenly over each set, the first and
/// the last included.
class Thinning {
public:
    explicit Thinning(const CapturedSets& theSets);

    bool IsThinned() const { return kept.size() < sets.points.size(); }
    CapturedSets Thinned() const;
    /// The findings of the part, extended to all points. An error that begins or ends between two points of the part
    /// begins or ends at the point where it explains most. Points that are far off and not in the part become errors of
    /// their own.
    HeadExplained OfAll(HeadExplained ofPart) const;

private:
    ModelError OfAll(const ModelError& error, const HeadModel& model) const;
    std::size_t BestEnd(std::size_t end, const ModelError& error, bool isFirst, const HeadModel& model) const;
    void AddPointsOff(HeadFit& fit) const;

    const CapturedSets& sets;
    std::vector<std::size_t> kept;
    std::size_t keptOfASet = 0;
};

} // namespace qmv40::diagnosis
