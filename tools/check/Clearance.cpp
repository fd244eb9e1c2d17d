#include "check/Clearance.h"

#include <algorithm>
#include <limits>

namespace check {

namespace {

double ToPoleSphere(const ExecutedMove& move, const HeadModel& head) {
    const double ofCentre = move.path.SmallestDistanceTo(head.PoleSphere());
    if (IsPegContact(move.id)) return ofCentre;
    const Path ofCup = move.path.ShiftedBy(head.DriveCup(move.before.angles));
    return std::min(ofCentre, ofCup.SmallestDistanceTo(head.PoleSphere()));
}

double ToLever(const ExecutedMove& move, const HeadModel& head, LeverSide side) {
    return std::min(move.path.SmallestDistanceTo(head.LeverBall(side, move.before.lever)),
                    move.path.SmallestDistanceTo(head.LeverCentre(side)));
}

double ToLevers(const ExecutedMove& move, const HeadModel& head) {
    const LeverSide inReach = HeadModel::LeverInReach(move.before.angles);
    const double toOther = ToLever(move, head, OtherLever(inReach));
    return IsLeverContact(move.id) ? toOther : std::min(toOther, ToLever(move, head, inReach));
}

} // namespace

bool IsPegContact(MoveId id) { return id >= MoveId::EngageWithPeg && id <= MoveId::DisengageFromPeg; }

bool IsLeverContact(MoveId id) {
    return id == MoveId::EngageWithUnLockLever || id == MoveId::UnLock || id == MoveId::EngageWithLockLever ||
           id == MoveId::Lock;
}

Room RoomOf(const ExecutedMove& move, const HeadModel& head, const BallSizes& sizes) {
    return {ToPoleSphere(move, head) - sizes.poleSphereRadius, ToLevers(move, head) - sizes.leverBallRadius};
}

Room RoomAt(const ExecutedMove& move, double fraction, const HeadModel& head, const BallSizes& sizes) {
    const CMaVector place = move.path.At(fraction);
    ExecutedMove standing{move.id, Path::Straight(place, place), move.before, move.before, 0.0};
    standing.before.angles = move.AnglesAt(fraction);
    return RoomOf(standing, head, sizes);
}

} // namespace check
