#pragma once

#include "maths/CMaPoint.h"
#include "maths/CMaPointArray.h"

/// Stands in for the component's plane where a test must see what the head model does with one.
class CMaPlane : public CMaGeometry {
public:
    void Fit(const CMaPointArray& points);
};
