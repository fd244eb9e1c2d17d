#include "tools/check/Findings.h"

#include <algorithm>
#include <array>
#include <functional>

namespace qmv40::check {

namespace {

using K = FindingKind;

constexpr std::array texts{
    FindingText{K::MovesOutOfOrder, "moves-out-of-order", "", "This move stands where another one belongs.",
                "Put the moves back into the order of `qmv40 move`."},
    FindingText{K::MoveMissing, "move-missing", "", "The plan ends without this move.",
                "Plan afresh with `qmv40 move`, or add the move."},
    FindingText{K::NotANumber, "not-a-number", "",
                "A number of the move is not finite, or its rotation vector has no length. This move and the following "
                "ones were not run.",
                "Look at the settings with `qmv40 doctor`: a dimension that reads as 0 can do this. Do not run the "
                "plan."},
    FindingText{K::StartIsNotTheEndBefore, "start-is-not-the-end-before", "deg",
                "The plan starts from other head angles than the plan before left.",
                "Plan the tour as a whole: one --from, several --to."},
    FindingText{K::LeverNotTouched, "lever-not-touched", "mm",
                "The machine stops beside the lever's ball and would push nothing.",
                "Restore the position from `qmv40 move` with the present geometry and settings."},
    FindingText{K::WrongLever, "wrong-lever", "", "The machine goes to the lever that is out of reach at these angles.",
                "Check that --from is where the head stands, and that B = 180 and B = -180 were not exchanged."},
    FindingText{K::LeverNotUnlocked, "lever-not-unlocked", "", "After this move the lever is still locked.",
                "Touch the ball first, and turn the full unlocking angle the right way."},
    FindingText{K::LeverNotLocked, "lever-not-locked", "", "After this move the lever is still unlocked.",
                "Touch the ball first, and turn the full locking angle the right way."},
    FindingText{K::EngagedWhileLocked, "engaged-while-locked", "",
                "The cup goes onto the peg while the head is locked.", "Unlock the head first (moves 1 to 4)."},
    FindingText{K::PegNotEngaged, "peg-not-engaged", "mm", "The drive cup stops away from the centre of the peg.",
                "Check that --from is where the head stands and that plan and geometry file belong together."},
    FindingText{K::IndexedWhileLocked, "indexed-while-locked", "",
                "The machine turns about the peg while the head is locked: something would bend.",
                "Unlock the head before it is indexed."},
    FindingText{K::PegTornOut, "peg-torn-out", "mm", "The head cannot follow this arc: the peg leaves its cup.",
                "Compare the arc's rotation vector and origin with `qmv40 move`, and the arcs before it."},
    FindingText{K::HeadAngleOutOfRange, "head-angle-out-of-range", "deg",
                "The head would be turned past its stop (A 0 to 90, B -180 to 180).",
                "Correct the arc's angle: its sign first."},
    FindingText{K::TargetNotReached, "target-not-reached", "deg", "The head does not end at the angles asked for.",
                "Plan to the target that is wanted; if the plan was edited, mend the first arc that is off."},
    FindingText{K::TargetPositionMissed, "target-position-missed", "mm",
                "The arcs do not carry the machine to the engagement position of the target.",
                "Mend the first arc that is off; if none is, plan and geometry file do not belong together."},
    FindingText{K::StillOnThePeg, "still-on-the-peg", "", "The plan ends with the cup on the peg.",
                "Back off along the approach line (moves 12 and 13)."},
    FindingText{K::NotLockedAtTheEnd, "not-locked-at-the-end", "", "The plan leaves the head unlocked.",
                "Do not measure: lock the head (moves 14 to 19) first."},
    FindingText{K::ArcLeavesItsStart, "arc-leaves-its-start", "mm",
                "The move before does not end where this arc has to begin.",
                "Mend the move before: an arc begins wherever the machine stands."},
    FindingText{K::ArcLosesItsRadius, "arc-loses-its-radius", "",
                "The rotation vector is not of unit length, so the arc would not keep its radius.",
                "Divide the vector by its length."},
    FindingText{K::ArcAxisTilted, "arc-axis-tilted", "deg", "The arc turns about another direction than it should.",
                "Restore the rotation vector from `qmv40 move`."},
    FindingText{K::ArcCentreOff, "arc-centre-off", "mm", "The arc's axis passes beside the point it should turn about.",
                "Restore the origin from `qmv40 move`."},
    FindingText{K::ArcTurnsTheWrongWay, "arc-turns-the-wrong-way", "deg",
                "The arc turns against the sense that it should have.",
                "Change the sign of RotationAngle: positive is clockwise, seen from the tip of the rotation vector."},
    FindingText{K::ArcAngleOff, "arc-angle-off", "deg", "The arc turns too far or not far enough.",
                "Correct RotationAngle by the amount shown."},
    FindingText{K::SwingGoesTheLongWay, "swing-goes-the-long-way", "deg", "The swing goes the long way round the pole.",
                "Take a whole turn off RotationAngle."},
    FindingText{K::ApproachFromTheWrongSide, "approach-from-the-wrong-side", "mm",
                "The point lies behind the contact: cup or machine would meet it from the wrong side.",
                "Restore the point from `qmv40 move`; do not run the plan."},
    FindingText{K::ApproachLineMissed, "approach-line-missed", "mm",
                "The point lies beside the line along which the contact is made and left.",
                "Restore the point from `qmv40 move`."},
    FindingText{K::ApproachTooShort, "approach-too-short", "mm",
                "The point is too close to the contact for what comes before or after it.",
                "Move the point away from the contact by the amount shown."},
    FindingText{K::NotAboveTheApproach, "not-above-the-approach", "mm",
                "Between safe height and approach point the machine moves sideways.",
                "Give both points the same X and Y."},
    FindingText{K::BelowSafeHeight, "below-safe-height", "mm",
                "The machine travels lower than the safe height above the pole sphere and both levers.",
                "Raise Z by the amount shown."},
    FindingText{K::TouchesPoleSphere, "touches-pole-sphere", "mm",
                "Head centre or drive cup come closer to the pole sphere than allowed.",
                "Look at the path in `qmv40 view`; if the plan is as computed, check --sphere-radius and --clearance."},
    FindingText{K::TouchesLever, "touches-lever", "mm", "The path comes closer to a lever than allowed.",
                "Look at the path in `qmv40 view`; if the plan is as computed, check --ball-radius and --clearance."},
    FindingText{K::TouchesObstacle, "touches-obstacle", "mm",
                "A part of the head comes closer to something that stands around than allowed.",
                "Look at the path in `qmv40 view`; move the fixture or the pole sphere, or correct the sizes that were "
                "assumed."},
    FindingText{K::TravelLimitExceeded, "travel-limit-exceeded", "mm", "The move leaves the machine's travel.",
                "Move the pole sphere further into the measuring volume, or correct the limits."},
    FindingText{K::StopUnknown, "stop-unknown", "",
                "It is not known where the plan was stopped: lever, cup and head may stand otherwise than shown.",
                "Move nothing. `qmv40 recover` says what to look at; ask again with --during or --after."},
};

static_assert(texts.size() == static_cast<std::size_t>(K::StopUnknown) + 1 &&
                  std::ranges::adjacent_find(texts, std::greater_equal(), &FindingText::kind) == texts.end(),
              "the texts are in the order of the kinds, which are their indices");

} // namespace

const FindingText& TextOf(FindingKind kind) { return texts[static_cast<std::size_t>(kind)]; }

std::span<const FindingText> AllFindingTexts() { return texts; }

} // namespace qmv40::check
