#include "cli/PlanFile.h"

#include "cli/Files.h"
#include "cli/Json.h"
#include "cli/Moves.h"

#include <algorithm>
#include <limits>
#include <set>

namespace {

/// A place in a document, for messages: plans[0].moves.UnLock.
struct Place {
    const std::string& file;
    std::string path;
    const Json& value;

    [[noreturn]] void Refuse(const std::string& problem) const {
        throw InputError{file, {}, (path.empty() ? "the document" : path) + " " + problem};
    }

    Place Member(const char* name) const {
        if (!value.is_object()) Refuse("is not an object");
        const auto found = value.find(name);
        if (found == value.end()) Refuse(std::string("has no member ") + name);
        return {file, path + (path.empty() ? "" : ".") + name, *found};
    }

    double Number() const {
        if (value.is_null()) return std::numeric_limits<double>::quiet_NaN();
        if (!value.is_number()) Refuse("is not a number");
        return value.get<double>();
    }

    double Number(const char* name) const { return Member(name).Number(); }
};

/// Refuses members that stand twice: only one of them would count, and nobody could tell which.
class NamesOnce {
public:
    explicit NamesOnce(const std::string& fileName) : file(fileName) {}

    bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
        if (event == Json::parse_event_t::object_start) {
            names.resize(static_cast<std::size_t>(depth) + 1);
            names.emplace_back();
        } else if (event == Json::parse_event_t::key) {
            names.resize(static_cast<std::size_t>(depth) + 1);
            const auto& name = parsed.get_ref<const std::string&>();
            if (!names.back().insert(name).second) throw InputError{file, {}, "the member " + name + " stands twice"};
        }
        return true;
    }

private:
    const std::string& file;
    std::vector<std::set<std::string>> names; ///< of the objects that are open, outermost first
};

Json ParsedDocument(const std::string& fileName, const std::string& text) {
    try {
        return Json::parse(text, NamesOnce(fileName));
    } catch (const Json::parse_error& error) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        const auto line = static_cast<std::size_t>(std::count(text.begin(), end, '\n')) + 1;
        throw InputError{fileName, line, "is not JSON from here on"};
    } catch (const Json::out_of_range&) {
        throw InputError{fileName, {}, "holds a number that is too large"};
    }
}

HeadAngles AnglesAt(const Place& place) { return {place.Number("A"), place.Number("B")}; }

XYZData PositionAt(const Place& place) {
    return {place.Number("XPosition"), place.Number("YPosition"), place.Number("ZPosition")};
}

ArcData ArcAt(const Place& place) {
    return {place.Number("XOrigin"),         place.Number("YOrigin"),         place.Number("ZOrigin"),
            place.Number("iRotationVector"), place.Number("jRotationVector"), place.Number("kRotationVector"),
            place.Number("RotationAngle")};
}

check::PlannedMove MoveAt(const Place& moves, const std::string& name) {
    const auto known = std::ranges::find_if(AllMoves(), [&](const Move& move) { return move.name == name; });
    if (known == AllMoves().end()) moves.Refuse("has a member " + name + ", and there is no such move");
    const auto id = static_cast<check::MoveId>(known - AllMoves().begin());
    const Place place = moves.Member(name.c_str());
    if (std::holds_alternative<ArcData RequiredMoves::*>(known->field)) return {id, ArcAt(place)};
    return {id, PositionAt(place)};
}

check::PlanToCheck PlanAt(const Place& place) {
    check::PlanToCheck plan{AnglesAt(place.Member("from")), AnglesAt(place.Member("to")), {}};
    const Place moves = place.Member("moves");
    if (!moves.value.is_object()) moves.Refuse("is not an object");
    for (const auto& move : moves.value.items()) plan.moves.push_back(MoveAt(moves, move.key()));
    return plan;
}

} // namespace

std::vector<check::PlanToCheck> ReadPlans(const std::string& fileName) {
    const Json document = ParsedDocument(fileName, ReadWholeFile(fileName));
    const Place place = Place{fileName, "", document}.Member("plans");
    if (!place.value.is_array()) place.Refuse("is not a list");
    std::vector<check::PlanToCheck> plans;
    for (const Json& plan : place.value) {
        plans.push_back(PlanAt({fileName, "plans[" + std::to_string(plans.size()) + "]", plan}));
    }
    if (plans.empty()) place.Refuse("is empty");
    return plans;
}
