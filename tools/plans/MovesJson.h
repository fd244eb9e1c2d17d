#pragma once

#include "interface/Records.h"
#include "tools/model/HeadAngles.h"
#include "tools/text/Json.h"

/// Records of the component as they stand in documents: members have the names of the records' fields.

namespace qmv40::plans {

text::Json PositionJson(const XYZData& position);
text::Json ArcJson(const ArcData& arc);
text::Json AnglesJson(const model::HeadAngles& angles);
text::Json MovesJson(const RequiredMoves& moves);

} // namespace qmv40::plans
