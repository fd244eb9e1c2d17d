#include "tools/plans/MovesJson.h"

namespace qmv40::plans {

using text::Json;

namespace {

Json RecordJson(const XYZData& position) { return PositionJson(position); }

Json RecordJson(const ArcData& arc) {
    return {{"XOrigin", arc.XOrigin},
            {"YOrigin", arc.YOrigin},
            {"ZOrigin", arc.ZOrigin},
            {"iRotationVector", arc.iRotationVector},
            {"jRotationVector", arc.jRotationVector},
            {"kRotationVector", arc.kRotationVector},
            {"RotationAngle", arc.RotationAngle}};
}

Json MoveJson(const PlacedMove& placed) {
    const PlannedMove& move = placed.move;
    Json document{{"number", NumberOf(move.id)},
                  {"name", NameOf(move.id)},
                  {"kind", std::holds_alternative<ArcData>(move.data) ? "arc" : "straight"},
                  {"record", std::visit([](const auto& record) { return RecordJson(record); }, move.data)}};
    if (placed.start) document["start"] = text::PointJson(*placed.start);
    if (placed.end) document["end"] = text::PointJson(*placed.end);
    return document;
}

} // namespace

Json PositionJson(const XYZData& position) {
    return {{"XPosition", position.XPosition}, {"YPosition", position.YPosition}, {"ZPosition", position.ZPosition}};
}

Json AnglesJson(const model::HeadAngles& angles) { return {{"A", angles.a}, {"B", angles.b}}; }

Json MovesJson(std::span<const PlacedMove> moves) {
    Json documents = Json::Array();
    for (const PlacedMove& move : moves) documents.PushBack(MoveJson(move));
    return documents;
}

Json PlansJson(std::span<const Plan> plans) {
    Json documents = Json::Array();
    for (const Plan& plan : plans) {
        documents.PushBack({{"from", AnglesJson(plan.from)},
                            {"to", AnglesJson(plan.to)},
                            {"moves", MovesJson(PlacedMoves(plan.moves))}});
    }
    return documents;
}

} // namespace qmv40::plans
