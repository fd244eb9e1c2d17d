#pragma once

#include "interface/Records.h"
#include "maths/CMaVector.h"

namespace qmv40 {

/// Conversions between vectors and the fields of the interface's records.

inline XYZData PositionOf(const CMaVector& point) { return {point[0], point[1], point[2]}; }

/// X and Y of `point`, with another Z.
inline XYZData PositionAtHeight(const CMaVector& point, double z) { return {point[0], point[1], z}; }

inline CMaVector VectorOf(const XYZData& position) {
    return {position.XPosition, position.YPosition, position.ZPosition};
}

/// The horizontal direction from `origin` to `point`.
inline CMaVector DirectionInXY(const CMaVector& origin, const CMaVector& point) {
    return {point[0] - origin[0], point[1] - origin[1], 0.0};
}

inline CMaVector Vertical() { return {0.0, 0.0, 1.0}; }

inline void SetOrigin(ArcData& arc, const CMaVector& origin) {
    arc.XOrigin = origin[0];
    arc.YOrigin = origin[1];
    arc.ZOrigin = origin[2];
}

inline void SetRotationVector(ArcData& arc, const CMaVector& axis) {
    arc.iRotationVector = axis[0];
    arc.jRotationVector = axis[1];
    arc.kRotationVector = axis[2];
}

inline ArcData ArcAbout(const CMaVector& origin, const CMaVector& axis, double angleDegrees) {
    return {origin[0], origin[1], origin[2], axis[0], axis[1], axis[2], angleDegrees};
}

} // namespace qmv40
