#pragma once

#include "tools/plans/PlannedMove.h"

#include <string>

namespace qmv40::plans {

/// Lets the component plan a tour through the positions. The head is at the first one. Throws ComponentError when
/// the component refuses one of the plans.
std::vector<Plan> PlanTour(const std::string& geometryFile, std::span<const model::HeadAngles> positions);

} // namespace qmv40::plans
