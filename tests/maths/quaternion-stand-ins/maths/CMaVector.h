#pragma once

#include "maths/CMaGeometry.h"
#include "maths/GeometryError.h"

/// Replaces the component's vector, which never fails where CQuaternion reads it: this one fails when a test asks to.
class CMaVector {
public:
    CMaVector(double, double, double) noexcept {}
    double operator[](int index) const;
};
