#pragma once

#include "maths/CMaPoint.h"
#include "maths/CMaPointArray.h"

/// Replaces the component's plane in HeadStepsTest.cpp, which records how the head model uses it.
class CMaPlane : public CMaGeometry {
public:
    void Fit(const CMaPointArray& points);
};
