#include "tools/plans/PlanFile.h"

#include "tools/plans/Moves.h"
#include "tools/text/Files.h"
#include "tools/text/Json.h"

#include <algorithm>
#include <limits>

namespace qmv40::plans {

namespace {

/// A place in a document, for messages: plans[0].moves.UnLock.
struct Place {
    const std::string& file;
    std::string path;
    const text::Json& value;

    [[noreturn]] void Refuse(const std::string& problem) const {
        throw text::InputError{file, {}, (path.empty() ? "the document" : path) + " " + problem};
    }

    Place Member(const std::string& name) const {
        if (!value.IsObject()) Refuse("is not an object");
        const text::Json* const found = value.Find(name);
        if (found == nullptr) Refuse("has no member " + name);
        return {file, path + (path.empty() ? "" : ".") + name, *found};
    }

    double Number(const char* name) const {
        const Place member = Member(name);
        if (member.value.IsNull()) return std::numeric_limits<double>::quiet_NaN();
        if (!member.value.Number()) member.Refuse("is not a number");
        return *member.value.Number();
    }
};

model::HeadAngles AnglesAt(const Place& place) { return {place.Number("A"), place.Number("B")}; }

XYZData PositionAt(const Place& place) {
    return {place.Number("XPosition"), place.Number("YPosition"), place.Number("ZPosition")};
}

ArcData ArcAt(const Place& place) {
    return {place.Number("XOrigin"),         place.Number("YOrigin"),         place.Number("ZOrigin"),
            place.Number("iRotationVector"), place.Number("jRotationVector"), place.Number("kRotationVector"),
            place.Number("RotationAngle")};
}

PlannedMove MoveAt(const Place& moves, const std::string& name) {
    const auto known = std::ranges::find_if(AllMoves(), [&](const Move& move) { return move.name == name; });
    if (known == AllMoves().end()) moves.Refuse("has a member " + name + ", and there is no such move");
    const auto id = static_cast<MoveId>(known - AllMoves().begin());
    const Place place = moves.Member(name);
    if (std::holds_alternative<ArcData RequiredMoves::*>(known->field)) return {id, ArcAt(place)};
    return {id, PositionAt(place)};
}

PlanToCheck PlanAt(const Place& place) {
    PlanToCheck plan{AnglesAt(place.Member("from")), AnglesAt(place.Member("to")), {}};
    const Place moves = place.Member("moves");
    if (!moves.value.IsObject()) moves.Refuse("is not an object");
    for (const text::Json::Member& move : moves.value.AllMembers()) plan.moves.push_back(MoveAt(moves, move.name));
    return plan;
}

} // namespace

std::vector<PlanToCheck> ReadPlans(const std::string& fileName) {
    const text::Json document = text::ParseJson(fileName, text::ReadWholeFile(fileName));
    const Place place = Place{fileName, "", document}.Member("plans");
    if (!place.value.IsArray()) place.Refuse("is not a list");
    std::vector<PlanToCheck> plans;
    for (const text::Json& plan : place.value.AllElements()) {
        plans.push_back(PlanAt({fileName, "plans[" + std::to_string(plans.size()) + "]", plan}));
    }
    if (plans.empty()) place.Refuse("is empty");
    return plans;
}

} // namespace qmv40::plans
