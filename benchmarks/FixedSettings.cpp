// Replaces the readers of the settings store by constants, so that the benchmarks time arithmetic alone. The cost of
// the store is timed through the shared library, which has the real readers.

#include "settings/FixedHeadOffsets.h"

namespace qmv40 {

FixedOffset ReadHeadCentreToDriveCupOffset() { return {-6.95, 24.0, -11.5}; }

FixedOffset ReadHeadCentreToLeverCentreOffset(int leverSide) { return {leverSide == 0 ? 30.3 : -30.3, 0.0, -32.25}; }

FixedOffset ReadLeverCentreToBallCentreOffset(int leverState) { return {0.0, leverState == 0 ? -19.3 : 19.3, -4.3}; }

FixedOffset ReadLockedToUnlockedOffset() { return {0.0, 0.0, -1.5}; }

double ReadLockedToUnlockedLeverRotation() { return 135.0; }

double ReadUnlockedToLockedLeverRotation() { return 138.0; }

} // namespace qmv40
