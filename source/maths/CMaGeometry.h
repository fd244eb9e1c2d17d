#pragma once

#include "maths/CMaObject.h"

/// Everything that has a place or a direction in space.
///
/// One right-handed frame, lengths in whatever unit the caller's coordinates have, angles in degrees. A turn by a
/// positive angle is right-handed: about Z it takes +X towards +Y.
class CMaGeometry : public CMaObject {
public:
    enum EAxisType { X = 0, Y = 1, Z = 2 };
};
