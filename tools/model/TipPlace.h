#pragma once

#include "tools/model/HeadModel.h"

#include <span>
#include <vector>

/// Where the machine stands when it measures the pole sphere with a stylus tip, and the inverse: the A and B of a head
/// that was measured so. A tip is its offset from the head's centre at A = 0, B = 0 with the head mounted square: a
/// plain stylus of length L is (0, 0, -L).

namespace qmv40::model {

/// Locked: as positions in plans. Unlocked: as points of a capture, with the shift of unlocking.
enum class Measured { Locked, Unlocked };

/// The machine's position with the tip in the sphere's centre.
Vector3 PlaceOf(const HeadModel& head, const HeadAngles& angles, const Vector3& tip, Measured measured);

struct MeasuredAngles {
    HeadAngles nearest;                ///< of the positions, the one whose place lies closest
    double offPlace;                   ///< mm, from that place to the measured one
    HeadAngles angles;                 ///< those next to it at which the measured place would be exact, or closest
    bool isBKnown;                     ///< false: the tip stands on the B axis, and no B is better than another
    std::vector<HeadAngles> samePlace; ///< positions whose places are that of the nearest, itself among them
};

/// The A and B that a machine position with the tip in the sphere's centre means, when the head stands at one of
/// `positions`.
MeasuredAngles AnglesAt(const HeadModel& head, const Vector3& place, const Vector3& tip, Measured measured,
                        std::span<const HeadAngles> positions);

} // namespace qmv40::model
