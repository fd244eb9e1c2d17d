#pragma once

#include "maths/CMaPoint.h"

class CMaPointArray;

namespace qmv40::fit {

struct FittedCircle {
    CMaPoint centre;
    CMaVector normal; ///< of unit length
    double radius;
};

/// The least-squares circle in space. CMaCircle.h states its accuracy and its errors.
FittedCircle FitCircle(const CMaPointArray& points, long evaluationLimit);

} // namespace qmv40::fit
