#include "tools/view/ViewDocument.h"

#include "tools/check/CheckReport.h"
#include "tools/motion/Sampling.h"
#include "tools/plans/Moves.h"
#include "tools/plans/MovesJson.h"
#include "tools/plans/TurnInWords.h"
#include "tools/text/Numbers.h"
#include "tools/view/MoveLevel.h"

#include <algorithm>

namespace qmv40::view {

namespace {

using model::HeadModel;
using model::LeverSide;
using model::LeverState;

constexpr motion::Spacing fineSpacing{.degrees = 1.0, .millimetres = 1.0};

text::Json ArrayJson(const model::Vector3& vector) { return {vector.x, vector.y, vector.z}; }

std::string PositionText(const model::HeadAngles& angles) {
    return "(" + text::ExactText(angles.a) + ", " + text::ExactText(angles.b) + ")";
}

text::Json VerdictJson(std::size_t findings) {
    return {{"clear", findings == 0}, {"text", check::VerdictText(findings)}};
}

text::Json LeverJson(const HeadModel& head, LeverSide side, const char* name) {
    const auto place = [&](const model::Vector3& position) { return ArrayJson(head.PlaceOnHead(position)); };
    return {{"side", name},
            {"pivot", place(head.LeverCentre(side))},
            {"locked", place(head.LeverBall(side, LeverState::Locked))},
            {"unlocked", place(head.LeverBall(side, LeverState::Unlocked))}};
}

/// Each level with the clearance from which on a move has it, if that is what makes it.
text::Json LevelsJson() {
    const auto level = [](MoveLevel each, const text::Json& atLeast) {
        return text::Json{{"name", NameOf(each)}, {"atLeast", atLeast}};
    };
    return {level(MoveLevel::Clear, tightClearance), level(MoveLevel::Tight, 0.0), level(MoveLevel::Contact, nullptr),
            level(MoveLevel::Finding, nullptr)};
}

text::Json PlannedJson(const plans::PlannedMove& move) {
    return std::visit(
        plans::ForKind{[](const XYZData& end) {
                           return text::Json{{"position", {end.XPosition, end.YPosition, end.ZPosition}}};
                       },
                       [](const ArcData& arc) {
                           return text::Json{
                               {"origin", {arc.XOrigin, arc.YOrigin, arc.ZOrigin}},
                               {"rotationVector", {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}},
                               {"angle", arc.RotationAngle}};
                       }},
        move.data);
}

/// The smaller clearance; none where the move must touch.
text::Json ClearanceJson(const motion::ExecutedMove& run, double fraction, const ViewedTour& view) {
    if (*check::ContactOf(run.id) != '\0') return nullptr;
    const check::Clearance clearance = check::ClearanceAt(run, fraction, view.head, view.options.sizes);
    return std::min(clearance.toPoleSphere, clearance.toLevers);
}

text::Json SampleJson(const motion::Sample& sample, const motion::ExecutedMove& run, const ViewedTour& view) {
    const model::Vector3 straightDown{0.0, 0.0, -1.0}; // where the stylus points at A = 0
    return {{"at", ArrayJson(sample.position)},
            {"A", sample.angles.a},
            {"B", sample.angles.b},
            {"cup", ArrayJson(sample.driveCup)},
            {"tiltAxis", ArrayJson(view.head.TurnOfA(0.0, sample.angles.b).axis)},
            {"stylus", ArrayJson(view.head.TurnedWithHead(straightDown, sample.angles))},
            {"clearance", ClearanceJson(run, sample.fraction, view)},
            {"lever", check::NameOf(sample.lever)},
            {"onPeg", sample.isOnPeg}};
}

/// What is known of every move, run or not.
text::Json MoveJson(const check::CheckedPlan& checked, std::size_t index) {
    const plans::PlannedMove& planned = checked.plan.moves[index];
    const auto* const arc = std::get_if<ArcData>(&planned.data);
    return {{"name", NameOf(planned.id)},
            {"purpose", plans::AllMoves()[plans::IndexOf(planned.id)].purpose},
            {"kind", arc == nullptr ? "straight" : "arc"},
            {"planned", PlannedJson(planned)},
            {"turn", arc == nullptr ? text::Json(nullptr) : text::Json(plans::TurnInWords(*arc))},
            {"level", NameOf(LevelOf(checked, index))},
            {"clearanceToPoleSphere", nullptr},
            {"clearanceToLevers", nullptr},
            {"mustTouch", check::ContactOf(planned.id)},
            {"samples", text::Json::Array()}};
}

text::Json AllMovesJson(const check::CheckedPlan& checked, const ViewedTour& view) {
    const std::vector<check::CheckedMove>& run = checked.report.moves;
    text::Json moves = text::Json::Array();
    for (std::size_t i = 0; i < checked.plan.moves.size(); ++i) {
        text::Json& move = moves.PushBack(MoveJson(checked, i));
        if (i >= run.size()) continue;
        move["clearanceToPoleSphere"] = run[i].clearance.toPoleSphere;
        move["clearanceToLevers"] = run[i].clearance.toLevers;
        for (const motion::Sample& sample : motion::SamplesOf(view.head, run[i].run, fineSpacing)) {
            move["samples"].PushBack(SampleJson(sample, run[i].run, view));
        }
    }
    return moves;
}

text::Json PlanJson(const check::CheckedPlan& checked, const ViewedTour& view) {
    return {{"from", plans::AnglesJson(checked.plan.from)},
            {"to", plans::AnglesJson(checked.plan.to)},
            {"verdict", VerdictJson(checked.report.findings.size())},
            {"findings", check::PlanFindingsJson(checked)},
            {"moves", AllMovesJson(checked, view)}};
}

} // namespace

std::string StopsText(const std::vector<check::CheckedPlan>& plans) {
    std::string stops;
    std::string before;
    for (const check::CheckedPlan& checked : plans) {
        const std::string from = PositionText(checked.plan.from);
        if (from != before) stops += (before.empty() ? "" : ", ") + from;
        before = PositionText(checked.plan.to);
        stops += " to " + before;
    }
    return stops;
}

text::Json ViewDocument(const ViewedTour& view) {
    text::Json plans = text::Json::Array();
    for (const check::CheckedPlan& checked : view.tour.plans) plans.PushBack(PlanJson(checked, view));
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

std::string EmbeddedDocument(const text::Json& document) {
    const std::string text = document.Dump();
    std::string embedded;
    for (const char c : text) embedded += c == '<' ? "\\u003c" : std::string(1, c);
    return embedded;
}

} // namespace qmv40::view
