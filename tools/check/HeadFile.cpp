#include "tools/check/HeadFile.h"

#include "settings/FixedHeadOffsets.h"

namespace qmv40::check {

namespace {

model::Vector3 VectorOf(const FixedOffset& offset) { return {offset.x, offset.y, offset.z}; }

model::HeadDimensions DimensionsInForce() {
    constexpr int plusLever = 0;
    constexpr int locked = 0;
    constexpr int unlocked = 1;
    using enum HeadOffset;
    return {VectorOf(ReadFixedOffset(HeadCentreToDriveCup)),
            VectorOf(ReadFixedOffset(HeadCentreToLeverCentre, plusLever)),
            VectorOf(ReadFixedOffset(LeverCentreToBallCentre, locked)),
            VectorOf(ReadFixedOffset(LeverCentreToBallCentre, unlocked)),
            ReadFixedRotation(UnlockingRotation),
            ReadFixedRotation(LockingRotation),
            VectorOf(ReadFixedOffset(LockedToUnlocked))};
}

} // namespace

model::HeadModel HeadModelOf(const std::array<double, headGeometryEntries.size()>& saved) {
    const model::Vector3 centre{saved[headCentreEntry], saved[headCentreEntry + 1], saved[headCentreEntry + 2]};
    return {centre, saved[rotationEntry], DimensionsInForce()};
}

} // namespace qmv40::check
