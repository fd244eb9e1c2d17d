#pragma once

#include "interface/Records.h"
#include "tools/model/HeadAngles.h"

#include <span>
#include <string>
#include <vector>

namespace qmv40::plans {

/// One indexing of the head, as the component planned it.
struct Plan {
    model::HeadAngles from;
    model::HeadAngles to;
    RequiredMoves moves;
};

/// Has the component plan a tour through the positions; the first is where the head stands. When one plan is refused,
/// the whole tour is: ComponentError.
std::vector<Plan> PlanTour(const std::string& geometryFile, std::span<const model::HeadAngles> positions);

} // namespace qmv40::plans
