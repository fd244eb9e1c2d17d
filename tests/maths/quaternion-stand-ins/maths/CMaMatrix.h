#pragma once

#include "maths/CMaVector.h"

/// Replaces the component's matrix in QuaternionStepsTest.cpp. The component's matrix never fails in CQuaternion; this
/// one fails if the test requires it.
class CMaMatrix : public CMaObject {
public:
    CMaMatrix(int, int) noexcept {}
    void SetElement(int row, int column, double value);
    CMaVector operator*(const CMaVector& v) const;
};
