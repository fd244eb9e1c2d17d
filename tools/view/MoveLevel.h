#pragma once

#include "tools/check/CheckedTour.h"

namespace qmv40::view {

/// How a move is marked where a plan is drawn. Of several levels the worst.
enum class MoveLevel {
    Clear,
    Tight,   ///< its clearance is below `tightClearance`
    Contact, ///< it must touch peg or lever
    Finding  ///< something is wrong with it, or it could not be run
};

/// The approach to the peg ends 10 mm before it. With a sphere of 5 mm radius the clearance is then 5 mm, which is
/// usual.
inline constexpr double tightClearance = 5.0; ///< mm

const char* NameOf(MoveLevel level);

MoveLevel LevelOf(const check::CheckedPlan& checked, std::size_t move);

} // namespace qmv40::view
