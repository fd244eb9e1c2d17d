#pragma once

#include "tools/diagnosis/fit/CapturedPoint.h"

#include <vector>

namespace qmv40::diagnosis {

/// A mistake that concerns whole columns. The capture is right when its columns are rewritten.
struct Rewriting {
    enum class Kind {
        None,
        SetsExchanged,  ///< A and B are exchanged
        SwivelReversed, ///< B counts the wrong way round
        TiltReversed,   ///< A counts the wrong way round
        AxisMirrored,   ///< a coordinate has the other sign
        AxesExchanged,  ///< two coordinates are in each other's column
        ArmHorizontal,  ///< the head hangs from a horizontal arm, or all three coordinates are in other columns
        UnitsMixed      ///< one set is in other units than the other one
    };
    /// The sets that it concerns.
    enum class Sets { Both, ASet, BSet };

    Kind kind = Kind::None;
    Sets sets = Sets::Both;
    double factor = 1.0; ///< of mixed units: lengths of the set are to be multiplied by this
    int axis = 0;        ///< of a mirrored axis: 0 is X
    int otherAxis = 0;   ///< of exchanged axes: the other one
};

/// A capture with its columns rewritten.
struct Rewritten {
    Rewriting rewriting;
    fit::CapturedSets sets;
};

/// All rewritings to be tried. `unlocking`: the shift that was subtracted from the points to bring them to the locked
/// position.
std::vector<Rewritten> AllRewritings(const fit::CapturedSets& sets, const model::Vector3& unlocking);

} // namespace qmv40::diagnosis
