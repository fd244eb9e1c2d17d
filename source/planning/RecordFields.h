#pragma once

#include "interface/Records.h"
#include "maths/CMaVector.h"

/// Vectors as fields of the interface's records.

inline XYZData PositionOf(const CMaVector& point) { return {point[0], point[1], point[2]}; }

/// The place of `point` in X and Y, at another height.
inline XYZData PositionAtHeight(const CMaVector& point, double z) { return {point[0], point[1], z}; }

inline CMaVector VectorOf(const XYZData& position) {
    return CMaVector(position.XPosition, position.YPosition, position.ZPosition);
}

inline ArcData ArcAbout(const CMaVector& origin, const CMaVector& axis, double angleDegrees) {
    return {origin[0], origin[1], origin[2], axis[0], axis[1], axis[2], angleDegrees};
}
