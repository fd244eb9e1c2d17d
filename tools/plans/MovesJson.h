#pragma once

#include "tools/plans/PlannedMove.h"
#include "tools/text/Json.h"

/// Plans in documents. Members of records have the names of the records' fields.

namespace qmv40::plans {

text::Json PositionJson(const XYZData& position);
text::Json AnglesJson(const model::HeadAngles& angles);
/// {"X", "Y", "Z"}

/// A list of {"number", "name", "kind", "record", "start", "end"}; what is not known is left out.
text::Json MovesJson(std::span<const PlacedMove> moves);

/// A list of {"from", "to", "moves"}.
text::Json PlansJson(std::span<const Plan> plans);

} // namespace qmv40::plans
