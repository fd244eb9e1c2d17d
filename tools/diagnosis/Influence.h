#pragma once

#include "tools/captures/CapturedPoint.h"
#include "tools/diagnosis/fit/AxisCircle.h"
#include "tools/diagnosis/fit/CaptureModel.h"

#include <optional>
#include <vector>

namespace qmv40::diagnosis {

/// The effect of leaving out one point.
struct Influence {
    double centreShift;   ///< how far the head centre moves
    double rotationShift; ///< by how much the rotation changes, degrees
    double pValue;        ///< how often noise alone would set the point so far off the circle of the others
};

struct PointDiagnosis {
    fit::CirclePoint onCircle;
    double offPlace;                    ///< distance from the place that the fitted head gives it at its angles
    std::optional<Influence> influence; ///< none where too few points would be left
};

/// Each point of both sets. Its place is the one on `head` without the mistakes of the capture.
std::vector<PointDiagnosis> PointsOf(const captures::CapturedSets& sets, const fit::AxisCircle& aCircle,
                                     const fit::AxisCircle& bCircle, fit::HeadModel head);

} // namespace qmv40::diagnosis
