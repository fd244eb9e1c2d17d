#include "tools/check/MoveRequirements.h"

#include <algorithm>
#include <array>
#include <functional>

namespace qmv40::check {

namespace {

using M = plans::MoveId;
using Ending = MoveRequirement::Ending;
using Arc = MoveRequirement::Arc;
using Height = MoveRequirement::Height;

constexpr std::array requirements{
    MoveRequirement{.id = M::ApproachUnLockLever, .ending = Ending::BeforeLever},
    MoveRequirement{.id = M::EngageWithUnLockLever, .ending = Ending::AtLever},
    MoveRequirement{.id = M::UnLock, .arc = Arc::Push},
    MoveRequirement{.id = M::DisengageFromUnLockLever, .height = Height::SafeAtEnd},
    MoveRequirement{.id = M::RotateToPeg, .arc = Arc::Swing, .height = Height::SafeAllAlong},
    MoveRequirement{.id = M::MoveToPegAtSafeZ, .height = Height::SafeAllAlong},
    MoveRequirement{.id = M::ApproachPeg, .ending = Ending::BeforePeg, .isVertical = true},
    MoveRequirement{.id = M::EngageWithPeg, .ending = Ending::AtPeg},
    MoveRequirement{.id = M::IntermediateAPosition, .arc = Arc::AToZero},
    MoveRequirement{.id = M::MoveToBPosition, .arc = Arc::BToTarget},
    MoveRequirement{.id = M::MoveToAPosition, .arc = Arc::AToTarget},
    MoveRequirement{.id = M::DisengageFromPeg, .ending = Ending::BeforePeg},
    MoveRequirement{.id = M::DisengageFromPegToSafeZ, .height = Height::SafeAtEnd, .isVertical = true},
    MoveRequirement{.id = M::RotateToLockLever, .arc = Arc::Swing, .height = Height::SafeAllAlong},
    MoveRequirement{.id = M::MoveToLockLeverAtSafeZ, .height = Height::SafeAllAlong},
    MoveRequirement{.id = M::ApproachLockLever, .ending = Ending::BeforeLever, .isVertical = true},
    MoveRequirement{.id = M::EngageWithLockLever, .ending = Ending::AtLever},
    MoveRequirement{.id = M::Lock, .arc = Arc::Push},
    MoveRequirement{.id = M::DisengageFromLockLever, .ending = Ending::ClearOfLever},
};

static_assert(requirements.size() == plans::moveCount &&
                  std::ranges::adjacent_find(requirements, std::greater_equal(), &MoveRequirement::id) ==
                      requirements.end(),
              "the requirements are in the order of the moves, which are their indices");

} // namespace

const MoveRequirement& RequirementOf(plans::MoveId id) { return requirements[IndexOf(id)]; }

} // namespace qmv40::check
