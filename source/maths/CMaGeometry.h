#pragma once

#include "maths/CMaObject.h"

/// The base of everything that has a position or a direction in space.
///
/// All coordinates are in one right-handed frame and in the caller's unit of length; angles are in degrees. A rotation
/// by a positive angle is right-handed: about Z it turns +X towards +Y.
class CMaGeometry : public CMaObject {
public:
    enum EAxisType { X = 0, Y = 1, Z = 2 };
};
