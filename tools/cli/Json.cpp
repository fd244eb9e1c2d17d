#include "cli/Json.h"

#include "cli/Moves.h"

Json PointJson(const CMaVector& point) { return {{"X", point[0]}, {"Y", point[1]}, {"Z", point[2]}}; }

Json DirectionJson(const CMaVector& direction) {
    return {{"i", direction[0]}, {"j", direction[1]}, {"k", direction[2]}};
}

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

Json AnglesJson(const HeadAngles& angles) { return {{"A", angles.a}, {"B", angles.b}}; }

Json MovesJson(const RequiredMoves& moves) {
    Json document = Json::object();
    for (const Move& move : AllMoves()) {
        document[move.name] =
            std::visit(ForKind{[&](XYZData RequiredMoves::*field) { return PositionJson(moves.*field); },
                               [&](ArcData RequiredMoves::*field) { return ArcJson(moves.*field); }},
                       move.field);
    }
    return document;
}

Json CircleJson(const CircleFit& fit) {
    return {{"centre", PointJson(fit.centre)},
            {"normal", DirectionJson(fit.normal)},
            {"radius", fit.radius},
            {"rms", fit.residuals.Rms()},
            {"residuals", fit.residuals.values}};
}

Json ErrorJson(const ComponentError& error) {
    return {{"error", {{"code", CodeText(error.code)}, {"source", error.source}, {"description", error.description}}}};
}

Json ErrorJson(const InputError& error) {
    const Json line = error.line ? Json(*error.line) : Json(nullptr);
    return {{"error", {{"file", error.file}, {"line", line}, {"description", error.reason}}}};
}

void PrintJson(const Json& document, std::ostream& out) {
    constexpr int indent = 2;
    // A file name may hold bytes that are no text; it must not cost the document.
    out << document.dump(indent, ' ', false, Json::error_handler_t::replace) << '\n';
}
