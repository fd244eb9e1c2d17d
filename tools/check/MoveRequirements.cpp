#include "tools/check/MoveRequirements.h"

#include <array>

namespace qmv40::check {

namespace {

using M = plans::MoveId;
using Ending = Contract::Ending;
using Arc = Contract::Arc;
using Height = Contract::Height;

constexpr std::array contracts{
    Contract{.id = M::ApproachUnLockLever, .ending = Ending::BeforeLever},
    Contract{.id = M::EngageWithUnLockLever, .ending = Ending::AtLever},
    Contract{.id = M::UnLock, .arc = Arc::Push},
    Contract{.id = M::DisengageFromUnLockLever, .height = Height::SafeAtEnd},
    Contract{.id = M::RotateToPeg, .arc = Arc::Swing, .height = Height::SafeAllAlong},
    Contract{.id = M::MoveToPegAtSafeZ, .height = Height::SafeAllAlong},
    Contract{.id = M::ApproachPeg, .ending = Ending::BeforePeg, .isVertical = true},
    Contract{.id = M::EngageWithPeg, .ending = Ending::AtPeg},
    Contract{.id = M::IntermediateAPosition, .arc = Arc::AToZero},
    Contract{.id = M::MoveToBPosition, .arc = Arc::BToTarget},
    Contract{.id = M::MoveToAPosition, .arc = Arc::AToTarget},
    Contract{.id = M::DisengageFromPeg, .ending = Ending::BeforePeg},
    Contract{.id = M::DisengageFromPegToSafeZ, .height = Height::SafeAtEnd, .isVertical = true},
    Contract{.id = M::RotateToLockLever, .arc = Arc::Swing, .height = Height::SafeAllAlong},
    Contract{.id = M::MoveToLockLeverAtSafeZ, .height = Height::SafeAllAlong},
    Contract{.id = M::ApproachLockLever, .ending = Ending::BeforeLever, .isVertical = true},
    Contract{.id = M::EngageWithLockLever, .ending = Ending::AtLever},
    Contract{.id = M::Lock, .arc = Arc::Push},
    Contract{.id = M::DisengageFromLockLever, .ending = Ending::ClearOfLever},
};

constexpr bool RequirementsStandInTheirPlaces() {
    for (std::size_t i = 0; i < contracts.size(); ++i) {
        if (IndexOf(contracts[i].id) != i) return false;
    }
    return contracts.size() == plans::moveCount;
}
static_assert(RequirementsStandInTheirPlaces());

} // namespace

const Contract& ContractOf(plans::MoveId id) { return contracts[IndexOf(id)]; }

} // namespace qmv40::check
