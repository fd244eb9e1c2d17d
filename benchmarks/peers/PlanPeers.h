#pragma once

#include "benchmarks/HeadAngles.h"
#include "head/RoundThePole.h"
#include "interface/Records.h"

#include <memory>

/// The 19 moves of one indexing written by hand on a geometry library: the same inputs as ours and the same record,
/// with each turn of the head made once for all the moves that need it.
class PlanPeer {
public:
    static std::unique_ptr<PlanPeer> OnEigen(const RoundThePole& head);
    static std::unique_ptr<PlanPeer> OnKdl(const RoundThePole& head);

    virtual ~PlanPeer() = default;
    virtual void Plan(const HeadAngles& from, const HeadAngles& to, RequiredMoves& moves) const = 0;
};
