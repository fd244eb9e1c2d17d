#pragma once

#include "maths/CMaPoint.h"

class CMaPointArray;

/// What the circle fit finds.
struct FittedCircle {
    CMaPoint centre;
    CMaVector normal; ///< of unit length
    double radius;
};

/// The least-squares circle in space; see CMaCircle::Fit for what it promises and throws.
FittedCircle FitCircle(const CMaPointArray& points, long iterationLimit);
