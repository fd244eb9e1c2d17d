#include "tools/plans/PlannedMove.h"

namespace qmv40::plans {

namespace {

std::optional<model::Vector3> EndOf(const PlannedMove& move, const std::optional<model::Vector3>& start) {
    if (const auto* const target = std::get_if<XYZData>(&move.data)) return VectorOf(*target);
    if (!start) return std::nullopt;
    return PathOf(move, *start).End();
}

} // namespace

std::vector<PlannedMove> MovesInOrder(const RequiredMoves& record) {
    std::vector<PlannedMove> moves;
    moves.reserve(moveCount);
    for (const Move& move : AllMoves()) {
        std::visit([&](const auto field) { moves.push_back({move.id, record.*field}); }, move.field);
    }
    return moves;
}

std::vector<PlacedMove> PlacedMoves(std::span<const PlannedMove> moves, const std::optional<model::Vector3>& start) {
    std::vector<PlacedMove> placed;
    placed.reserve(moves.size());
    std::optional<model::Vector3> position = start;
    for (const PlannedMove& move : moves) {
        const std::optional<model::Vector3> end = EndOf(move, position);
        placed.push_back({move, position, end});
        position = end;
    }
    return placed;
}

model::Vector3 VectorOf(const XYZData& position) {
    return {position.XPosition, position.YPosition, position.ZPosition};
}

model::Vector3 OriginOf(const ArcData& arc) { return {arc.XOrigin, arc.YOrigin, arc.ZOrigin}; }

model::Vector3 RotationVectorOf(const ArcData& arc) {
    return {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector};
}

model::Vector3 AxisOf(const ArcData& arc) { return model::Unit(RotationVectorOf(arc)); }

double RightHandedDegrees(const ArcData& arc) { return -arc.RotationAngle; }

model::Path PathOf(const PlannedMove& move, const model::Vector3& start) {
    return std::visit(ForKind{[&](const XYZData& target) { return model::Path::Straight(start, VectorOf(target)); },
                              [&](const ArcData& arc) {
                                  return model::Path::Arc(start, OriginOf(arc), AxisOf(arc), RightHandedDegrees(arc));
                              }},
                      move.data);
}

} // namespace qmv40::plans
