#pragma once

#include "tools/captures/CapturedPoint.h"
#include "tools/diagnosis/Finding.h"

#include <vector>

namespace qmv40::diagnosis {

/// A mistake that concerns whole columns. The capture is right when its columns are rewritten.
struct Rewriting {
    /// The sets that it concerns.
    enum class Sets { Both, ASet, BSet };

    FindingKind kind; ///< of its finding; UnitsWrong: one set is in other units than the other one
    Sets sets = Sets::Both;
    int detail = 0;      ///< of its finding
    double factor = 1.0; ///< of mixed units: lengths of the set are to be multiplied by this
};

/// A capture with its columns rewritten.
struct Rewritten {
    Rewriting rewriting;
    captures::CapturedSets sets;
};

/// All rewritings to be tried. `unlocking`: the shift that was subtracted from the points to bring them to the locked
/// position.
std::vector<Rewritten> AllRewritings(const captures::CapturedSets& sets, const model::Vector3& unlocking);

} // namespace qmv40::diagnosis
