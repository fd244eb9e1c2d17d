#include "tools/plans/PlanFile.h"

#include "tools/plans/Moves.h"
#include "tools/text/DocumentPlace.h"
#include "tools/text/Files.h"

#include <limits>

namespace qmv40::plans {

namespace {

using Place = text::DocumentPlace;

/// Documents write null for every number that is not finite. It is read as not-a-number.
double NumberAt(const Place& place, const char* name) {
    const Place member = place.Member(name);
    return member.value.IsNull() ? std::numeric_limits<double>::quiet_NaN() : member.Number();
}

model::HeadAngles AnglesAt(const Place& place) { return {NumberAt(place, "A"), NumberAt(place, "B")}; }

XYZData Read(const Place& record, XYZData RequiredMoves::* /*field*/) {
    return {NumberAt(record, "XPosition"), NumberAt(record, "YPosition"), NumberAt(record, "ZPosition")};
}

ArcData Read(const Place& record, ArcData RequiredMoves::* /*field*/) {
    return {NumberAt(record, "XOrigin"),         NumberAt(record, "YOrigin"),
            NumberAt(record, "ZOrigin"),         NumberAt(record, "iRotationVector"),
            NumberAt(record, "jRotationVector"), NumberAt(record, "kRotationVector"),
            NumberAt(record, "RotationAngle")};
}

/// "number", "kind", "start" and "end" repeat what "name", "record" and the order say. In an edited file they may be
/// wrong, so they are not read.
PlannedMove MoveAt(const Place& place) {
    const std::string name = place.Member("name").Text();
    const Move* const move = FindMove(name);
    if (move == nullptr) place.Member("name").Refuse("is " + name + ", and there is no such move");
    const Place record = place.Member("record");
    const auto read = [&](const auto field) -> std::variant<XYZData, ArcData> { return Read(record, field); };
    return {move->id, std::visit(read, move->field)};
}

Plan PlanAt(const Place& place) {
    Plan plan{AnglesAt(place.Member("from")), AnglesAt(place.Member("to")), {}};
    for (const Place& move : place.Member("moves").Elements()) plan.moves.push_back(MoveAt(move));
    return plan;
}

} // namespace

std::vector<Plan> ReadPlans(const std::string& fileName) {
    const text::Json document = text::ParseJson(fileName, text::ReadWholeFile(fileName));
    const Place place = Place{fileName, "", document}.Member("plans");
    std::vector<Plan> plans;
    for (const Place& plan : place.Elements()) plans.push_back(PlanAt(plan));
    if (plans.empty()) place.Refuse("is empty");
    return plans;
}

} // namespace qmv40::plans
