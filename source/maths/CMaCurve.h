#pragma once

#include "maths/CMaNonLinearGeometry.h"

/// A curve in space.
class CMaCurve : public CMaNonLinearGeometry {};
