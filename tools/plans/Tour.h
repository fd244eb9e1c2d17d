#pragma once

#include "interface/Records.h"
#include "tools/model/HeadAngles.h"

#include <string>
#include <vector>

namespace qmv40::plans {

/// One indexing of the head, as the component planned it.
struct Plan {
    model::HeadAngles from;
    model::HeadAngles to;
    RequiredMoves moves;
};

/// Has the component plan a tour: each plan begins where the one before ends. When one plan is refused, the whole tour
/// is: ComponentError.
std::vector<Plan> PlanTour(const std::string& geometryFile, const model::HeadAngles& from,
                           const std::vector<model::HeadAngles>& targets);

} // namespace qmv40::plans
