#include "tools/plans/MovesJson.h"

#include "tools/plans/Moves.h"

namespace qmv40::plans {

using text::Json;

Json PositionJson(const XYZData& position) {
    return {{"XPosition", position.XPosition}, {"YPosition", position.YPosition}, {"ZPosition", position.ZPosition}};
}

Json ArcJson(const ArcData& arc) {
    return {{"XOrigin", arc.XOrigin},
            {"YOrigin", arc.YOrigin},
            {"ZOrigin", arc.ZOrigin},
            {"iRotationVector", arc.iRotationVector},
            {"jRotationVector", arc.jRotationVector},
            {"kRotationVector", arc.kRotationVector},
            {"RotationAngle", arc.RotationAngle}};
}

Json AnglesJson(const model::HeadAngles& angles) { return {{"A", angles.a}, {"B", angles.b}}; }

Json MovesJson(const RequiredMoves& moves) {
    Json document = Json::Object();
    for (const Move& move : AllMoves()) {
        document[move.name] =
            std::visit(ForKind{[&](XYZData RequiredMoves::*field) { return PositionJson(moves.*field); },
                               [&](ArcData RequiredMoves::*field) { return ArcJson(moves.*field); }},
                       move.field);
    }
    return document;
}

} // namespace qmv40::plans
