// Replaces the readers of the settings store by constants, so that the benchmarks time only arithmetic. The cost of the
// store is timed through the shared library, which has the real readers.

#include "settings/FixedHeadOffsets.h"

namespace qmv40 {

FixedOffset ReadFixedOffset(HeadOffset offset, int selector) {
    const double side = selector == 0 ? 1.0 : -1.0;
    switch (offset) {
    case HeadOffset::HeadCentreToDriveCup:
        return {-6.95, 24.0, -11.5};
    case HeadOffset::HeadCentreToLeverCentre:
        return {side * 30.3, 0.0, -32.25};
    case HeadOffset::LeverCentreToBallCentre:
        return {0.0, side * -19.3, -4.3};
    default:
        return {0.0, 0.0, -1.5};
    }
}

double ReadFixedRotation(HeadOffset offset) { return offset == HeadOffset::UnlockingRotation ? 135.0 : 138.0; }

} // namespace qmv40
