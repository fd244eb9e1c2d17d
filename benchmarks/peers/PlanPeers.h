#pragma once

#include "head/RoundThePole.h"
#include "interface/Records.h"

#include <memory>

/// The 19 moves of one indexing written by hand on a geometry library: the same inputs as ours and the same record,
/// with each turn of the head made once for all the moves that need it.
class PlanPeer {
public:
    struct Angles {
        double a, b;
    };

    static std::unique_ptr<PlanPeer> OnEigen(const RoundThePole& head);
    static std::unique_ptr<PlanPeer> OnKdl(const RoundThePole& head);

    virtual ~PlanPeer() = default;
    virtual void Plan(const Angles& from, const Angles& to, RequiredMoves& moves) const = 0;
};
