#include "cli/ViewDocument.h"

#include "check/Sampling.h"
#include "cli/CheckReport.h"
#include "cli/MoveLevel.h"
#include "cli/Moves.h"
#include "cli/Numbers.h"

#include <algorithm>

namespace {

using check::HeadModel;
using check::LeverSide;
using check::LeverState;

constexpr check::Spacing fineSpacing{.degrees = 1.0, .millimetres = 1.0};

Json ArrayJson(const CMaVector& vector) { return {vector[0], vector[1], vector[2]}; }

std::string PositionText(const HeadAngles& angles) {
    return "(" + ExactText(angles.a) + ", " + ExactText(angles.b) + ")";
}

Json VerdictJson(std::size_t findings) { return {{"clear", findings == 0}, {"text", VerdictText(findings)}}; }

Json LeverJson(const HeadModel& head, LeverSide side, const char* name) {
    const auto place = [&](const CMaVector& position) { return ArrayJson(head.PlaceOnHead(position)); };
    return {{"side", name},
            {"pivot", place(head.LeverCentre(side))},
            {"locked", place(head.LeverBall(side, LeverState::Locked))},
            {"unlocked", place(head.LeverBall(side, LeverState::Unlocked))}};
}

/// Each level with the room from which on a move has it, if that is what makes it.
Json LevelsJson() {
    const auto level = [](MoveLevel each, const Json& atLeast) {
        return Json{{"name", NameOf(each)}, {"atLeast", atLeast}};
    };
    return Json::array({level(MoveLevel::Clear, tightRoom), level(MoveLevel::Tight, 0.0),
                        level(MoveLevel::Contact, nullptr), level(MoveLevel::Finding, nullptr)});
}

Json PlannedJson(const check::PlannedMove& move) {
    return std::visit(
        ForKind{[](const XYZData& end) {
                    return Json{{"position", {end.XPosition, end.YPosition, end.ZPosition}}};
                },
                [](const ArcData& arc) {
                    return Json{{"origin", {arc.XOrigin, arc.YOrigin, arc.ZOrigin}},
                                {"rotationVector", {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}},
                                {"angle", arc.RotationAngle}};
                }},
        move.data);
}

/// The smaller room; none where the move must touch.
Json RoomJson(const check::ExecutedMove& run, double fraction, const ViewedTour& view) {
    if (*ContactOf(run.id) != '\0') return nullptr;
    const check::Room room = check::RoomAt(run, fraction, view.head, view.options.sizes);
    return std::min(room.toPoleSphere, room.toLevers);
}

Json SampleJson(const check::Sample& sample, const check::ExecutedMove& run, const ViewedTour& view) {
    const CMaVector straightDown(0.0, 0.0, -1.0); // where the stylus points at A = 0
    return {{"at", ArrayJson(sample.position)},
            {"A", sample.angles.a},
            {"B", sample.angles.b},
            {"cup", ArrayJson(sample.driveCup)},
            {"tiltAxis", ArrayJson(view.head.TurnOfA(0.0, sample.angles.b).axis)},
            {"stylus", ArrayJson(view.head.TurnedWithHead(straightDown, sample.angles))},
            {"room", RoomJson(run, sample.fraction, view)},
            {"lever", NameOf(sample.lever)},
            {"onPeg", sample.isOnPeg}};
}

/// What is known of every move, run or not.
Json MoveJson(const CheckedPlan& checked, std::size_t index) {
    const check::PlannedMove& planned = checked.plan.moves[index];
    const auto* const arc = std::get_if<ArcData>(&planned.data);
    return {{"name", NameOf(planned.id)},
            {"purpose", AllMoves()[check::IndexOf(planned.id)].purpose},
            {"kind", arc == nullptr ? "straight" : "arc"},
            {"planned", PlannedJson(planned)},
            {"turn", arc == nullptr ? Json(nullptr) : Json(TurnInWords(*arc))},
            {"level", NameOf(LevelOf(checked, index))},
            {"roomToPoleSphere", nullptr},
            {"roomToLevers", nullptr},
            {"mustTouch", ContactOf(planned.id)},
            {"samples", Json::array()}};
}

Json AllMovesJson(const CheckedPlan& checked, const ViewedTour& view) {
    const std::vector<check::SweptMove> path = check::SweptPath(view.head, checked.report, fineSpacing);
    Json moves = Json::array();
    for (std::size_t i = 0; i < checked.plan.moves.size(); ++i) {
        Json& move = moves.emplace_back(MoveJson(checked, i));
        if (i >= path.size()) continue;
        move["roomToPoleSphere"] = path[i].room.toPoleSphere;
        move["roomToLevers"] = path[i].room.toLevers;
        for (const check::Sample& sample : path[i].samples) {
            move["samples"].push_back(SampleJson(sample, checked.report.moves[i].run, view));
        }
    }
    return moves;
}

Json PlanJson(const CheckedPlan& checked, const ViewedTour& view) {
    return {{"from", AnglesJson(checked.plan.from)},
            {"to", AnglesJson(checked.plan.to)},
            {"verdict", VerdictJson(checked.report.findings.size())},
            {"findings", PlanFindingsJson(checked)},
            {"moves", AllMovesJson(checked, view)}};
}

} // namespace

std::string StopsText(const std::vector<CheckedPlan>& plans) {
    std::string stops;
    std::string before;
    for (const CheckedPlan& checked : plans) {
        const std::string from = PositionText(checked.plan.from);
        if (from != before) stops += (before.empty() ? "" : ", ") + from;
        before = PositionText(checked.plan.to);
        stops += " to " + before;
    }
    return stops;
}

Json ViewDocument(const ViewedTour& view) {
    Json plans = Json::array();
    for (const CheckedPlan& checked : view.tour.plans) plans.push_back(PlanJson(checked, view));
    const HeadModel& head = view.head;
    return {
        {"title", view.title},
        {"units", {{"length", "mm"}, {"angle", "deg"}}},
        {"sphere", {{"centre", ArrayJson(head.PoleSphere())}, {"radius", view.options.sizes.poleSphereRadius}}},
        {"safeHeight", head.SafeHeight()},
        {"leverBallRadius", view.options.sizes.leverBallRadius},
        {"mounting",
         {{"right", ArrayJson(head.Mounted({1.0, 0.0, 0.0}))}, {"forward", ArrayJson(head.Mounted({0.0, 1.0, 0.0}))}}},
        {"levers", {LeverJson(head, LeverSide::Plus, "plus"), LeverJson(head, LeverSide::Minus, "minus")}},
        {"levels", LevelsJson()},
        {"verdict", VerdictJson(view.tour.Findings())},
        {"plans", plans}};
}

std::string EmbeddedDocument(const Json& document) {
    const std::string text = document.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string embedded;
    for (const char c : text) embedded += c == '<' ? "\\u003c" : std::string(1, c);
    return embedded;
}
