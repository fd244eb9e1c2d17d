#include "tools/view/ViewDocument.h"

#include "tools/check/Assumptions.h"
#include "tools/check/CheckReport.h"
#include "tools/motion/Sampling.h"
#include "tools/plans/Moves.h"
#include "tools/plans/MovesJson.h"
#include "tools/plans/TurnInWords.h"
#include "tools/text/Numbers.h"
#include "tools/text/Text.h"
#include "tools/view/DrawnPlan.h"
#include "tools/view/Markup.h"

#include <algorithm>
#include <bit>
#include <cstdint>

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

/// The levels. `atLeast`: the smallest clearance of a move with this level; null when the clearance does not decide.
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

/// The smaller one of the clearances to pole sphere and levers; null when the move must touch.
text::Json ClearanceJson(const motion::ExecutedMove& run, double fraction, const ViewedTour& view) {
    if (*check::ContactOf(run.id) != '\0') return nullptr;
    const check::Clearance clearance = check::ClearanceAt(run, fraction, view.head, view.options.sizes);
    return std::min(clearance.toPoleSphere, clearance.toLevers);
}

text::Json SampleJson(const motion::Sample& sample, const motion::ExecutedMove& run, const ViewedTour& view) {
    const model::Vector3 straightDown{0.0, 0.0, -1.0}; // direction of the stylus at A = 0
    return {{"at", ArrayJson(sample.position)},
            {"A", sample.angles.a},
            {"B", sample.angles.b},
            {"cup", ArrayJson(sample.driveCup)},
            {"tiltAxis", ArrayJson(view.head.TurnOfA(0.0, sample.angles.b).axis)},
            {"stylus", ArrayJson(view.head.TurnedWithHead(straightDown, sample.angles))},
            {"clearance", ClearanceJson(run, sample.fraction, view)},
            {"lever", check::NameOf(sample.lever)},
            {"onPeg", sample.isOnPeg},
            {"leverPushed", sample.isLeverPushed}};
}

text::Json StateJson(const motion::HeadState& state) {
    return {{"A", state.angles.a},
            {"B", state.angles.b},
            {"lever", check::NameOf(state.lever)},
            {"onPeg", state.isOnPeg},
            {"leverPushed", state.pushed > 0.0}};
}

/// The move in closed form. The page can compute all its points from it.
text::Json MotionJson(const motion::ExecutedMove& run) {
    const model::Path& path = run.path;
    text::Json arc = nullptr;
    if (path.IsArc()) {
        arc = {{"centre", ArrayJson(path.Centre())},
               {"axis", ArrayJson(path.Radius() > 0.0 ? path.Axis() : model::Vector3{})},
               {"degrees", path.Degrees()}};
    }
    return {{"start", ArrayJson(path.Start())}, {"end", ArrayJson(path.End())},    {"arc", arc},
            {"pushesLever", run.PushesLever()}, {"before", StateJson(run.before)}, {"after", StateJson(run.after)}};
}

/// The obstacle that the move comes closest to.
text::Json NearestJson(const check::CheckedMove& move, const check::Figures& figures) {
    const auto nearest = std::ranges::min_element(move.around, {}, &check::PartClearance::atLeast);
    if (nearest == move.around.end()) return nullptr;
    const check::PairFigure& pair = figures.PairOf(*nearest);
    return {{"part", pair.part}, {"obstacle", pair.solid}, {"clearance", nearest->atLeast}};
}

/// For a person beside the machine; null for a straight move.
text::Json TurnJson(const check::CheckedPlan& checked, std::size_t index) {
    const auto* const arc = std::get_if<ArcData>(&checked.plan.moves[index].data);
    if (arc == nullptr) return nullptr;
    if (index >= checked.report.moves.size()) return plans::TurnInWords(*arc);
    return plans::TurnInWords(*arc, checked.report.moves[index].run.path.Start());
}

/// What is known of every move, also of one that could not be run.
text::Json MoveJson(const check::CheckedPlan& checked, std::size_t index) {
    const plans::PlannedMove& planned = checked.plan.moves[index];
    return {{"name", NameOf(planned.id)},
            {"purpose", plans::AllMoves()[plans::IndexOf(planned.id)].purpose},
            {"kind", std::holds_alternative<ArcData>(planned.data) ? "arc" : "straight"},
            {"planned", PlannedJson(planned)},
            {"turn", TurnJson(checked, index)},
            {"level", NameOf(LevelOf(checked, index))},
            {"clearanceToPoleSphere", nullptr},
            {"clearanceToLevers", nullptr},
            {"mustTouch", check::ContactOf(planned.id)},
            {"nearest", nullptr},
            {"motion", nullptr},
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
        move["nearest"] = NearestJson(run[i], view.tour.figures);
        move["motion"] = MotionJson(run[i].run);
        move["motion"]["way"] = text::Json::Array();
        for (const motion::ExecutedMove& part : RunsOf(checked.report, i)) {
            move["motion"]["way"].PushBack(ArrayJson(part.path.Start()));
            if (view.tour.plans.size() > mostPlansInFull) continue;
            for (const motion::Sample& sample : motion::SamplesOf(view.head, part, fineSpacing)) {
                move["samples"].PushBack(SampleJson(sample, part, view));
            }
        }
    }
    return moves;
}

/// The corners of a surface as 32-bit numbers in base64. As decimals, a mesh would make the page far larger.
std::string SurfaceText(const std::vector<check::obstacles::Triangle>& surface) {
    std::string bytes;
    const auto add = [&](double number) {
        const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(number));
        for (int i = 0; i < 4; ++i) bytes += static_cast<char>((bits >> (8 * i)) & 0xFFU);
    };
    for (const check::obstacles::Triangle& triangle : surface) {
        for (const model::Vector3& corner : {triangle.a, triangle.b, triangle.c}) {
            for (std::size_t axis = 0; axis < 3; ++axis) add(corner[axis]);
        }
    }
    return Base64(bytes);
}

text::Json ObstaclesJson(const std::vector<check::obstacles::Obstacle>& obstacles) {
    text::Json list = text::Json::Array();
    for (const check::obstacles::Obstacle& obstacle : obstacles) {
        list.PushBack({{"name", obstacle.name},
                       {"description", obstacle.description},
                       {"triangles", obstacle.surface->size()},
                       {"surface", SurfaceText(*obstacle.surface)}});
    }
    return list;
}

text::Json AssumedJson(const check::CheckOptions& options) {
    text::Json lines = text::Json::Array();
    for (const check::AssumptionLine& line : check::AssumptionLines(options)) {
        lines.PushBack({{"what", line.what}, {"value", line.value}, {"option", line.option}});
    }
    return lines;
}

text::Json PlanJson(const check::CheckedPlan& checked, const ViewedTour& view) {
    return {{"from", plans::AnglesJson(checked.plan.from)},
            {"to", plans::AnglesJson(checked.plan.to)},
            {"verdict", VerdictJson(checked.report.findings.size())},
            {"findings", text::FindingsJson(check::FindingsOf(checked))},
            {"moves", AllMovesJson(checked, view)}};
}

/// "(0, 0) to (45, 90) to (15, -30)", the head positions one after the other.
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

} // namespace

std::string TitleText(const std::string& name, const std::vector<check::CheckedPlan>& plans) {
    if (plans.size() <= mostPlansInFull) return name + ": " + StopsText(plans);
    return name + ": a tour of " + std::to_string(plans.size()) + " plans, from " +
           PositionText(plans.front().plan.from) + " to " + PositionText(plans.back().plan.to);
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
        {"driveCup", ArrayJson(head.DriveCup({0.0, 0.0}))},
        {"stemDiameter", view.options.scene.stemDiameter},
        {"stylus", check::StylusJson(view.options.scene.parts.stylus)},
        {"table", view.options.scene.table},
        {"obstacles", ObstaclesJson(view.options.scene.obstacles)},
        {"assumptions", AssumedJson(view.options)},
        {"levels", LevelsJson()},
        {"verdict", VerdictJson(view.tour.Findings())},
        {"plans", plans}};
}

std::string EmbeddedDocument(const text::Json& document) {
    static constexpr std::pair<char, std::string_view> escape[] = {{'<', "\\u003c"}};
    return text::Replaced(document.Dump(), escape);
}

} // namespace qmv40::view
