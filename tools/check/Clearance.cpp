#include "tools/check/Clearance.h"

#include <algorithm>

namespace qmv40::check {

namespace {

double ToPoleSphere(const motion::ExecutedMove& move, const model::HeadModel& head) {
    const double ofCentre = move.path.SmallestDistanceTo(head.PoleSphere());
    if (IsPegContact(move.id)) return ofCentre;
    const model::Path ofCup = move.path.ShiftedBy(head.DriveCup(move.before.angles));
    return std::min(ofCentre, ofCup.SmallestDistanceTo(head.PoleSphere()));
}

double ToLever(const motion::ExecutedMove& move, const model::HeadModel& head, model::LeverSide side) {
    return std::min(move.path.SmallestDistanceTo(head.LeverBall(side, move.before.lever)),
                    move.path.SmallestDistanceTo(head.LeverCentre(side)));
}

double ToLevers(const motion::ExecutedMove& move, const model::HeadModel& head) {
    const model::LeverSide inReach = model::HeadModel::LeverInReach(move.before.angles);
    const double toOther = ToLever(move, head, model::OtherLever(inReach));
    return IsLeverContact(move.id) ? toOther : std::min(toOther, ToLever(move, head, inReach));
}

} // namespace

bool IsPegContact(plans::MoveId id) {
    return id >= plans::MoveId::EngageWithPeg && id <= plans::MoveId::DisengageFromPeg;
}

bool IsLeverContact(plans::MoveId id) {
    return id == plans::MoveId::EngageWithUnLockLever || id == plans::MoveId::UnLock ||
           id == plans::MoveId::EngageWithLockLever || id == plans::MoveId::Lock;
}

Clearance ClearanceOf(const motion::ExecutedMove& move, const model::HeadModel& head, const BallSizes& sizes) {
    return {ToPoleSphere(move, head) - sizes.poleSphereRadius, ToLevers(move, head) - sizes.leverBallRadius};
}

Clearance ClearanceAt(const motion::ExecutedMove& move, double fraction, const model::HeadModel& head,
                      const BallSizes& sizes) {
    const model::Vector3 place = move.path.At(fraction);
    motion::ExecutedMove standing{move.id, model::Path::Straight(place, place), move.before, move.before, 0.0};
    standing.before.angles = move.AnglesAt(fraction);
    return ClearanceOf(standing, head, sizes);
}

} // namespace qmv40::check
