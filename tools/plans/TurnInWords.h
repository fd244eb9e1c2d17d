#pragma once

#include "tools/model/Path.h"
#include "tools/plans/PlannedMove.h"

#include <string>

namespace qmv40::plans {

/// The direction of an arc that begins at `start`, for a person beside the machine: "turn 90.0000 deg clockwise, seen
/// from above", or "turn 135.0000 deg up and over, towards +Y". Without a start, an arc about a horizontal axis is
/// described as seen from the tip of that axis.
std::string TurnInWords(const ArcData& arc, const std::optional<model::Vector3>& start = std::nullopt);

} // namespace qmv40::plans
