#include "WayJudge.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace qmv40;
using model::LeverSide;
using model::LeverState;
using model::Vector3;

// The radii that the check assumes when the user gives none, mm
constexpr double sphereRadius = 5.0;
constexpr double ballRadius = 2.5;

LeverState Other(LeverState state) { return state == LeverState::Locked ? LeverState::Unlocked : LeverState::Locked; }

/// True when the point lies on the line, between contact and approach point.
bool IsOn(const model::ContactLine& line, const Vector3& point, double tolerance) {
    const Vector3 from = point - line.contact;
    const double along = model::Dot(from, line.outward);
    return along >= -tolerance && along <= line.distance + tolerance &&
           model::Length(from - along * line.outward) <= tolerance;
}

class Judge {
public:
    Judge(const model::HeadModel& theHead, const TrueState& theState, const JudgeTolerance& theTolerance)
        : head(theHead), state(theState), tolerance(theTolerance) {}

    std::string Run(const plans::PlannedMove& move);
    std::string AtEnd(const model::HeadAngles& angles, const Vector3& end) const;

private:
    std::string Touched(const model::Path& path, bool isPush) const;
    std::string RunStraight(const model::Path& path);
    std::string Push(const Vector3& turn, const model::Path& path);
    std::string TurnHead(const Vector3& turn, const model::Path& path);
    bool IsAlong(const model::ContactLine& line, const model::Path& path) const {
        return !path.IsArc() && IsOn(line, path.Start(), tolerance.length) && IsOn(line, path.End(), tolerance.length);
    }
    /// The angles, rounded to an index position when they are within the tolerance of one.
    model::HeadAngles IndexPosition() const {
        const auto nearest = [&](double degrees) {
            const double index = 15.0 * std::round(degrees / 15.0);
            return std::abs(degrees - index) <= tolerance.angle ? index : degrees;
        };
        return {nearest(state.angles.a), nearest(state.angles.b)};
    }
    bool IsAt(const Vector3& place) const { return model::Distance(state.position, place) <= tolerance.length; }

    const model::HeadModel& head;
    TrueState state;
    JudgeTolerance tolerance;
};

std::string Judge::Touched(const model::Path& path, bool isPush) const {
    const bool keepsPeg = (state.isOnPeg && path.IsArc()) || IsAlong(head.PegLine(state.angles), path);
    const model::Path cup = path.ShiftedBy(head.DriveCup(state.angles));
    if (path.SmallestDistanceTo(head.PoleSphere()) < sphereRadius - tolerance.length)
        return "head centre touches the sphere";
    if (!keepsPeg && cup.SmallestDistanceTo(head.PoleSphere()) < sphereRadius - tolerance.length) {
        return "cup touches the sphere";
    }
    for (const LeverSide side : {LeverSide::Plus, LeverSide::Minus}) {
        const bool isPushed = state.touchedBall == side && isPush;
        if (isPushed || IsAlong(head.LeverLine(side, state.lever), path)) continue;
        if (path.SmallestDistanceTo(head.LeverBall(side, state.lever)) < ballRadius - tolerance.length)
            return "touches a ball";
        if (path.SmallestDistanceTo(head.LeverCentre(side)) < ballRadius - tolerance.length) return "touches a lever";
    }
    return "";
}

std::string Judge::RunStraight(const model::Path& path) {
    if (state.pushed > tolerance.angle) return "leaves the lever half-way";
    const model::ContactLine peg = head.PegLine(state.angles);
    if (state.isOnPeg && !IsAlong(peg, path)) return "pulls the cup off sideways";
    state.position = path.End();
    const bool wasOnPeg = state.isOnPeg;
    state.isOnPeg = IsAt(peg.contact);
    if (state.isOnPeg && state.lever == LeverState::Locked) return "engages while locked";
    if (state.isOnPeg && !wasOnPeg && !IsAlong(peg, path)) return "engages from the side";
    state.touchedBall.reset();
    for (const LeverSide side : {LeverSide::Plus, LeverSide::Minus}) {
        if (!IsAt(head.LeverBall(side, state.lever))) continue;
        if (side != model::HeadModel::LeverInReach(IndexPosition())) return "touches the wrong lever";
        state.touchedBall = side;
    }
    return "";
}

std::string Judge::Push(const Vector3& turn, const model::Path& path) {
    const model::Turning push = head.LeverPush(*state.touchedBall, state.lever);
    const double sense = push.degrees < 0.0 ? -1.0 : 1.0;
    const double degrees = sense * model::Dot(turn, push.axis);
    if (degrees < -tolerance.angle) return "pulls the lever";
    if (std::abs(model::Length(turn) - std::abs(degrees)) > tolerance.angle) return "pushes about another axis";
    state.pushed += degrees;
    state.position = path.End();
    if (std::abs(state.pushed - std::abs(push.degrees)) > tolerance.angle) return "does not push the lever through";
    state.lever = Other(state.lever);
    state.pushed = 0.0;
    state.touchedBall.reset();
    return "";
}

std::string Judge::TurnHead(const Vector3& turn, const model::Path& path) {
    if (state.lever == LeverState::Locked) return "turns a locked head";
    state.angles.a += model::Dot(turn, head.TurnOfA(0.0, state.angles.b).axis);
    state.angles.b += model::Dot(turn, head.TurnOfB(0.0).axis);
    const double excess = std::max({-state.angles.a, state.angles.a - 90.0, std::abs(state.angles.b) - 180.0});
    if (excess > tolerance.angle) return "turns the head past its stop";
    state.position = path.End();
    return IsAt(head.EngagementPosition(state.angles)) ? "" : "pulls the cup off in a turn";
}

std::string Judge::Run(const plans::PlannedMove& move) {
    const model::Path path = plans::PathOf(move, state.position);
    const auto* const arc = std::get_if<ArcData>(&move.data);
    const bool isPush = arc != nullptr && state.touchedBall.has_value();
    if (const std::string touched = Touched(path, isPush); !touched.empty()) return touched;
    if (arc == nullptr) return RunStraight(path);
    const Vector3 turn = plans::RightHandedDegrees(*arc) * plans::AxisOf(*arc);
    if (isPush) return Push(turn, path);
    if (state.isOnPeg) return TurnHead(turn, path);
    state.position = path.End();
    return "";
}

std::string Judge::AtEnd(const model::HeadAngles& angles, const Vector3& end) const {
    if (state.isOnPeg) return "ends on the peg";
    if (state.lever != LeverState::Locked || state.pushed > tolerance.angle) return "ends unlocked";
    const double error = std::max(std::abs(angles.a - state.angles.a), std::abs(angles.b - state.angles.b));
    if (error > tolerance.angle) return "ends at other angles";
    return IsAt(end) ? "" : "ends in another place";
}

} // namespace

std::string ProblemOfWay(const model::HeadModel& head, const TrueState& state,
                         std::span<const plans::PlannedMove> moves, const model::HeadAngles& angles, const Vector3& end,
                         const JudgeTolerance& tolerance) {
    Judge judge(head, state, tolerance);
    for (std::size_t i = 0; i < moves.size(); ++i) {
        const std::string problem = judge.Run(moves[i]);
        if (!problem.empty()) {
            return std::string(plans::NameOf(moves[i].id)) + " (number " + std::to_string(i + 1) + " of the way) " +
                   problem;
        }
    }
    return judge.AtEnd(angles, end);
}
