#pragma once

#include "tools/check/CheckedTour.h"

namespace qmv40::view {

/// How a move is marked where a plan is drawn, the worst that holds of it.
enum class MoveLevel {
    Clear,
    Tight,   ///< it leaves less than `tightClearance`
    Contact, ///< it must touch peg or lever
    Finding  ///< something is wrong with it, or it could not be run
};

/// What the approach to the peg leaves of a sphere of 10 mm: that much is usual.
inline constexpr double tightClearance = 5.0; ///< mm

const char* NameOf(MoveLevel level);

MoveLevel LevelOf(const check::CheckedPlan& checked, std::size_t move);

} // namespace qmv40::view
