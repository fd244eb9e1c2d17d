#pragma once

#include "settings/HeadSettings.h"

namespace qmv40 {

struct FixedOffset {
    double x;
    double y;
    double z;
};

/// A fixed offset of the head's mechanics. Opens the key of the settings store, reads the settings of the offset and
/// closes the key; nothing is cached or written. A missing setting has its built-in value. If `selector` (a lever
/// side or a lever state) is not 0, the settings that the table marks as mirrored are negated. It fails only when
/// memory runs out (std::bad_alloc).
FixedOffset ReadFixedOffset(HeadOffset offset, int selector = 0);

/// The same for an offset of one setting: the degrees by which a lever turns.
double ReadFixedRotation(HeadOffset offset);

} // namespace qmv40
