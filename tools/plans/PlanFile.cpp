#include "tools/plans/PlanFile.h"

#include "tools/plans/Moves.h"
#include "tools/text/Files.h"
#include "tools/text/Json.h"

#include <limits>

namespace qmv40::plans {

namespace {

/// A place in a document, for messages, such as plans[0].moves[2].record.
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

    template <typename Call> void ForEach(Call&& call) const {
        if (!value.IsArray()) Refuse("is not a list");
        std::size_t index = 0;
        for (const text::Json& element : value.AllElements()) {
            call(Place{file, path + "[" + std::to_string(index++) + "]", element});
        }
    }

    double Number(const char* name) const {
        const Place member = Member(name);
        if (member.value.IsNull()) return std::numeric_limits<double>::quiet_NaN();
        if (!member.value.Number()) member.Refuse("is not a number");
        return *member.value.Number();
    }
};

model::HeadAngles AnglesAt(const Place& place) { return {place.Number("A"), place.Number("B")}; }

void Read(const Place& record, XYZData& position) {
    position = {record.Number("XPosition"), record.Number("YPosition"), record.Number("ZPosition")};
}

void Read(const Place& record, ArcData& arc) {
    arc = {record.Number("XOrigin"),         record.Number("YOrigin"),         record.Number("ZOrigin"),
           record.Number("iRotationVector"), record.Number("jRotationVector"), record.Number("kRotationVector"),
           record.Number("RotationAngle")};
}

template <typename Record>
std::variant<XYZData, ArcData> RecordAt(const Place& place, Record RequiredMoves::* /*field*/) {
    Record record{};
    Read(place, record);
    return record;
}

/// "number", "kind", "start" and "end" repeat what "name", "record" and the order say. In an edited file they may be
/// wrong, so they are not read.
PlannedMove MoveAt(const Place& place) {
    const Place name = place.Member("name");
    if (name.value.Text() == nullptr) name.Refuse("is not a text");
    const Move* const move = FindMove(*name.value.Text());
    if (move == nullptr) name.Refuse("is " + *name.value.Text() + ", and there is no such move");
    const Place record = place.Member("record");
    return {move->id, std::visit([&](const auto field) { return RecordAt(record, field); }, move->field)};
}

PlanToCheck PlanAt(const Place& place) {
    PlanToCheck plan{AnglesAt(place.Member("from")), AnglesAt(place.Member("to")), {}};
    place.Member("moves").ForEach([&](const Place& move) { plan.moves.push_back(MoveAt(move)); });
    return plan;
}

} // namespace

std::vector<PlanToCheck> ReadPlans(const std::string& fileName) {
    const text::Json document = text::ParseJson(fileName, text::ReadWholeFile(fileName));
    const Place place = Place{fileName, "", document}.Member("plans");
    std::vector<PlanToCheck> plans;
    place.ForEach([&](const Place& plan) { plans.push_back(PlanAt(plan)); });
    if (plans.empty()) place.Refuse("is empty");
    return plans;
}

} // namespace qmv40::plans
