#pragma once

#include "maths/CMaPlane.h"

/// Stands in for the component's line: every step can fail here, also those that cannot fail there.
class CMaLine : public CMaGeometry {
public:
    void Fit(const CMaPointArray& points);
    double AngleWith(const CMaPlane& plane) const;
};
