#pragma once

#include "maths/CMaGeometry.h"
#include "maths/GeometryError.h"

/// Replaces the component's vector in QuaternionStepsTest.cpp. The component's vector never fails in CQuaternion; this
/// one fails if the test requires it.
class CMaVector {
public:
    CMaVector(double, double, double) noexcept {}
    double operator[](int index) const;
};
