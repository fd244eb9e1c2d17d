#include "tools/plans/Moves.h"

#include "tools/text/Numbers.h"

#include <array>
#include <cmath>

namespace qmv40::plans {

namespace {

using M = RequiredMoves;

constexpr std::array allMoves{
    Move{"ApproachUnLockLever", "go to the closed lock lever", &M::ApproachUnLockLever},
    Move{"EngageWithUnLockLever", "touch the lever's ball", &M::EngageWithUnLockLever},
    Move{"UnLock", "push the lever open", &M::UnLock},
    Move{"DisengageFromUnLockLever", "rise clear of the lever to the safe height", &M::DisengageFromUnLockLever},
    Move{"RotateToPeg", "swing round to the peg", &M::RotateToPeg},
    Move{"MoveToPegAtSafeZ", "go above the peg's approach at the safe height", &M::MoveToPegAtSafeZ},
    Move{"ApproachPeg", "go down in front of the peg", &M::ApproachPeg},
    Move{"EngageWithPeg", "engage the drive cup with the peg", &M::EngageWithPeg},
    Move{"IntermediateAPosition", "turn the head's A to 0", &M::IntermediateAPosition},
    Move{"MoveToBPosition", "turn the head's B to the target", &M::MoveToBPosition},
    Move{"MoveToAPosition", "turn the head's A to the target", &M::MoveToAPosition},
    Move{"DisengageFromPeg", "back off the peg", &M::DisengageFromPeg},
    Move{"DisengageFromPegToSafeZ", "rise to the safe height", &M::DisengageFromPegToSafeZ},
    Move{"RotateToLockLever", "swing round to the lock lever", &M::RotateToLockLever},
    Move{"MoveToLockLeverAtSafeZ", "go above the lever's approach at the safe height", &M::MoveToLockLeverAtSafeZ},
    Move{"ApproachLockLever", "go down beside the open lever", &M::ApproachLockLever},
    Move{"EngageWithLockLever", "touch the lever's ball", &M::EngageWithLockLever},
    Move{"Lock", "push the lever shut", &M::Lock},
    Move{"DisengageFromLockLever", "lift off the closed lever", &M::DisengageFromLockLever},
};
static_assert(allMoves.size() == 19);

constexpr int angleDecimals = 4;

std::string Viewpoint(const ArcData& arc) {
    const bool isVertical = arc.iRotationVector == 0.0 && arc.jRotationVector == 0.0;
    if (isVertical && arc.kRotationVector > 0.0) return "from above";
    if (isVertical && arc.kRotationVector < 0.0) return "from below";
    constexpr int directionDecimals = 6;
    return "from the tip of (" + text::FixedText(arc.iRotationVector, directionDecimals) + ", " +
           text::FixedText(arc.jRotationVector, directionDecimals) + ", " +
           text::FixedText(arc.kRotationVector, directionDecimals) + ")";
}

} // namespace

std::span<const Move> AllMoves() { return allMoves; }

const char* NameOf(MoveId id) { return allMoves[IndexOf(id)].name; }

std::string TurnInWords(const ArcData& arc) {
    if (arc.RotationAngle == 0.0) return "no turn: 0 deg";
    if (std::isnan(arc.RotationAngle)) return "the angle is not a number: do not run this move";
    const char* const sense = arc.RotationAngle > 0.0 ? "clockwise" : "counter-clockwise";
    return "turn " + text::FixedText(std::abs(arc.RotationAngle), angleDecimals) + " deg " + sense + ", seen " +
           Viewpoint(arc);
}

} // namespace qmv40::plans
