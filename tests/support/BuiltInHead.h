#pragma once

#include "tools/model/HeadModel.h"

/// A head with the built-in dimensions, as docs/conventions.md shows it: the pole sphere at the origin.
inline qmv40::model::HeadModel IdealHead(double mountedTurn = 0.0,
                                         const qmv40::model::Vector3& pole = {0.0, 0.0, 0.0}) {
    return {pole,
            mountedTurn,
            {{-6.95, 24.0, -11.5}, {30.3, 0.0, -32.25}, {0.0, -19.3, -4.3}, {0.0, 19.3, -4.3}, 135.0, 138.0}};
}
