#pragma once

#include "maths/CMaPlane.h"

/// Replaces the component's line in HeadStepsTest.cpp, which decides the result of each operation. So every step can
/// fail, also one that never fails in the component.
class CMaLine : public CMaGeometry {
public:
    void Fit(const CMaPointArray& points);
    double AngleWith(const CMaPlane& plane) const;
};
