#pragma once

#include "tools/model/HeadAngles.h"
#include "tools/model/Path.h"
#include "tools/plans/Moves.h"

#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace qmv40::plans {

/// A straight move to a position, or an arc that begins at the present machine position.
struct PlannedMove {
    MoveId id;
    std::variant<XYZData, ArcData> data;
};

/// One indexing: from where, to where, and the moves in their order. A plan of the component has all 19 of them; a plan
/// from a file has what the file says.
struct Plan {
    model::HeadAngles from;
    model::HeadAngles to;
    std::vector<PlannedMove> moves;
};

/// The moves of a record, in the order in which they must be made.
std::vector<PlannedMove> MovesInOrder(const RequiredMoves& record);

/// A move with its ends, which an arc's record does not have.
struct PlacedMove {
    PlannedMove move;
    std::optional<model::Vector3> start; ///< empty when the machine position before it is not known
    std::optional<model::Vector3> end;   ///< empty for an arc without a start
};

/// The moves with their starts and ends. `start`: the machine position before the first one, if it is known. Otherwise
/// the machine begins at the end of the first move.
std::vector<PlacedMove> PlacedMoves(std::span<const PlannedMove> moves,
                                    const std::optional<model::Vector3>& start = std::nullopt);

// Numbers of a record as vectors of the model
model::Vector3 VectorOf(const XYZData& position);
model::Vector3 OriginOf(const ArcData& arc);
model::Vector3 RotationVectorOf(const ArcData& arc);
/// The rotation vector scaled to unit length.
model::Vector3 AxisOf(const ArcData& arc);
/// How far an arc turns right-handed about its rotation vector, degrees. Records give it left-handed: a positive angle
/// is clockwise as seen from the vector's tip.
double RightHandedDegrees(const ArcData& arc);

model::Path PathOf(const PlannedMove& move, const model::Vector3& start);

} // namespace qmv40::plans
