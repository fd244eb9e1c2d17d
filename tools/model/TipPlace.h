#pragma once

#include "tools/model/HeadModel.h"

#include <span>
#include <vector>

/// The machine position when the machine measures the pole sphere with a stylus tip, and the inverse: A and B of the
/// head from a measured position. A tip is its offset from the head's centre at A = 0, B = 0 with the head mounted
/// square: a plain stylus of length L is (0, 0, -L).

namespace qmv40::model {

/// Locked: as positions in plans. Unlocked: as points of a capture, with the shift of unlocking.
enum class Measured { Locked, Unlocked };

/// The machine's position with the tip in the sphere's centre.
Vector3 PlaceOf(const HeadModel& head, const HeadAngles& angles, const Vector3& tip, Measured measured);

struct MeasuredAngles {
    HeadAngles nearest;                ///< the one of `positions` whose place is closest
    double offPlace;                   ///< mm, distance of the measured place from that of `nearest`
    HeadAngles angles;                 ///< near `nearest`, with the place closest to the measured one
    bool isBKnown;                     ///< false: the tip is on the B axis, so that its place does not depend on B
    std::vector<HeadAngles> samePlace; ///< the positions with the same place as `nearest`, itself included
};

/// A and B of the head from the machine position with the tip in the sphere's centre. The head is at or near one of
/// `positions`.
MeasuredAngles AnglesAt(const HeadModel& head, const Vector3& place, const Vector3& tip, Measured measured,
                        std::span<const HeadAngles> positions);

} // namespace qmv40::model
