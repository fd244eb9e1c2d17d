#pragma once

#include "maths/CMaVector.h"

/// Replaces the component's matrix, which never fails where CQuaternion uses it: this one fails when a test asks
/// to.
class CMaMatrix : public CMaObject {
public:
    CMaMatrix(int, int) noexcept {}
    void SetElement(int row, int column, double value);
    CMaVector operator*(const CMaVector& v) const;
};
