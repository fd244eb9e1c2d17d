#include "tools/plans/PlannedMove.h"

namespace qmv40::plans {

std::vector<PlannedMove> MovesInOrder(const RequiredMoves& record) {
    return {{MoveId::ApproachUnLockLever, record.ApproachUnLockLever},
            {MoveId::EngageWithUnLockLever, record.EngageWithUnLockLever},
            {MoveId::UnLock, record.UnLock},
            {MoveId::DisengageFromUnLockLever, record.DisengageFromUnLockLever},
            {MoveId::RotateToPeg, record.RotateToPeg},
            {MoveId::MoveToPegAtSafeZ, record.MoveToPegAtSafeZ},
            {MoveId::ApproachPeg, record.ApproachPeg},
            {MoveId::EngageWithPeg, record.EngageWithPeg},
            {MoveId::IntermediateAPosition, record.IntermediateAPosition},
            {MoveId::MoveToBPosition, record.MoveToBPosition},
            {MoveId::MoveToAPosition, record.MoveToAPosition},
            {MoveId::DisengageFromPeg, record.DisengageFromPeg},
            {MoveId::DisengageFromPegToSafeZ, record.DisengageFromPegToSafeZ},
            {MoveId::RotateToLockLever, record.RotateToLockLever},
            {MoveId::MoveToLockLeverAtSafeZ, record.MoveToLockLeverAtSafeZ},
            {MoveId::ApproachLockLever, record.ApproachLockLever},
            {MoveId::EngageWithLockLever, record.EngageWithLockLever},
            {MoveId::Lock, record.Lock},
            {MoveId::DisengageFromLockLever, record.DisengageFromLockLever}};
}

} // namespace qmv40::plans
