#include "tools/selfcheck/SelfChecks.h"

#include "head/RoundThePole.h"
#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "maths/CQuaternion.h"
#include "tools/component/AlignmentArray.h"
#include "tools/component/ComponentError.h"
#include "tools/plans/Moves.h"
#include "tools/settings/MachineSettings.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace qmv40::selfcheck {

namespace {

// Coordinates of some hundreds of millimetres carry about 1e-13 of rounding; a wrong sign or constant shows by more
// than a micrometre.
constexpr double lengthTolerance = 1e-9;
constexpr double angleTolerance = 1e-9;
constexpr double directionTolerance = 1e-12;

// The 3-4-5 triangle: its angle, and what a turn by it does to the coordinates without any rounding worth the name.
constexpr double triangleAngle = 36.86989764584402;
constexpr double triangleCosine = 0.8;
constexpr double triangleSine = 0.6;

using Numbers = std::vector<double>;

Numbers NumbersOf(const CMaVector& v) { return {v[0], v[1], v[2]}; }
Numbers NumbersOf(const XYZData& position) { return {position.XPosition, position.YPosition, position.ZPosition}; }
Numbers OriginOf(const ArcData& arc) { return {arc.XOrigin, arc.YOrigin, arc.ZOrigin}; }
Numbers AxisOf(const ArcData& arc) { return {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}; }

double DistanceBetween(const Numbers& one, const Numbers& other) {
    return std::hypot(one[0] - other[0], one[1] - other[1], one[2] - other[2]);
}

SelfCheck LengthCheck(std::string what, Numbers expected, Numbers got) {
    return {std::move(what), std::move(expected), std::move(got), "mm", lengthTolerance};
}
SelfCheck AngleCheck(std::string what, double expected, double got) {
    return {std::move(what), {expected}, {got}, "deg", angleTolerance};
}
SelfCheck DirectionCheck(std::string what, Numbers expected, Numbers got) {
    return {std::move(what), std::move(expected), std::move(got), "", directionTolerance};
}

// A capture whose points are whole numbers: circles through Pythagorean triangles.

/// Head centre of the worked head, the direction in which its tilted stylus leaves the vertical, and how many times 25
/// mm its stylus is long. A = 0 captures the point straight above the centre, A = 90 the one in that direction.
struct WorkedHead {
    double x, y, z;
    double towardsX, towardsY;
    double scale;
};

constexpr WorkedHead squareHead{0.0, 0.0, 0.0, 0.0, 1.0, 1.0};
constexpr WorkedHead headTurnedLeft{300.0, -200.0, -500.0, -triangleSine, triangleCosine, 8.0};
constexpr WorkedHead headTurnedRight{300.0, -200.0, -500.0, triangleSine, triangleCosine, 8.0};

/// The points are measured unlocked, 1.5 lower than locked.
constexpr double unlockedZ = -1.5;

std::vector<HeadAlignmentDataItem> AAxisCapture(const WorkedHead& head) {
    constexpr double outAndUp[][2] = {{0, 25}, {7, 24}, {15, 20}, {20, 15}, {24, 7}, {25, 0}};
    std::vector<HeadAlignmentDataItem> points;
    for (const auto& [out, up] : outAndUp) {
        const double distance = out * head.scale;
        points.push_back({std::atan2(out, up) * 180.0 / std::numbers::pi, 0.0, head.x + head.towardsX * distance,
                          head.y + head.towardsY * distance, head.z + up * head.scale + unlockedZ});
    }
    return points;
}

std::vector<HeadAlignmentDataItem> BAxisCapture(const WorkedHead& head) {
    constexpr double around[][2] = {{25, 0}, {15, 20}, {0, 25}, {-20, 15}, {-25, 0}, {-7, -24}, {0, -25}, {24, -7}};
    std::vector<HeadAlignmentDataItem> points;
    for (const auto& [x, y] : around) {
        points.push_back({90.0, std::atan2(-x, y) * 180.0 / std::numbers::pi, head.x + x * head.scale,
                          head.y + y * head.scale, head.z + unlockedZ});
    }
    return points;
}

void Enter(const WorkedHead& head, component::Calculator& calculator) {
    calculator.EnterHeadGeometry(AAxisCapture(head), BAxisCapture(head));
}

RequiredMoves PlanFrom(component::Calculator& calculator, const model::HeadAngles& from, const model::HeadAngles& to) {
    calculator.SetCurrentHeadPosition(from);
    return calculator.CalculateMove(to);
}

Numbers StartFrom(component::Calculator& calculator, const model::HeadAngles& from) {
    calculator.SetCurrentHeadPosition(from);
    return NumbersOf(calculator.StartPosition());
}

double RotationOf(const WorkedHead& worked) {
    return component::CatchingCodes("RoundThePole", [&] {
        const std::vector<HeadAlignmentDataItem> aAxis = AAxisCapture(worked);
        const std::vector<HeadAlignmentDataItem> bAxis = BAxisCapture(worked);
        component::AlignmentArray aAxisArray(aAxis);
        component::AlignmentArray bAxisArray(bAxis);
        RoundThePole head;
        head.ComputeGeometry(aAxisArray.Address(), bAxisArray.Address());
        return head.RequiredRotationAroundZ();
    });
}

// Executing arcs, as the machine does

enum class Sense { LeftHanded, RightHanded };

/// Where an arc carries the machine's position.
Numbers Execute(const ArcData& arc, const Numbers& from, Sense sense) {
    const double turn = arc.RotationAngle * std::numbers::pi / 180.0 * (sense == Sense::LeftHanded ? -1.0 : 1.0);
    const CMaVector axis(arc.iRotationVector, arc.jRotationVector, arc.kRotationVector);
    const CMaVector origin(arc.XOrigin, arc.YOrigin, arc.ZOrigin);
    const CMaVector arm = CMaVector(from[0], from[1], from[2]) + origin * -1.0;
    const double along = (axis % arm) * (1.0 - std::cos(turn));
    return NumbersOf(origin + arm * std::cos(turn) + (axis * arm) * std::sin(turn) + axis * along);
}

Numbers ExecuteIndexing(const RequiredMoves& moves, Sense sense) {
    Numbers position = NumbersOf(moves.EngageWithPeg);
    for (const ArcData* const arc : {&moves.IntermediateAPosition, &moves.MoveToBPosition, &moves.MoveToAPosition}) {
        position = Execute(*arc, position, sense);
    }
    return position;
}

/// Degrees from the X axis, seen from the head centre at the origin.
double Bearing(const Numbers& position) { return std::atan2(position[1], position[0]) * 180.0 / std::numbers::pi; }

// The groups

Numbers Rotated(CMaVector v, double angle, CMaGeometry::EAxisType axis, const CMaPoint& centre) {
    v.Rotate(angle, axis, centre);
    return NumbersOf(v);
}

SelfCheckGroup RotateChecks() {
    using enum CMaGeometry::EAxisType;
    const CMaPoint zero(0.0, 0.0, 0.0);
    return {"Rotate is right-handed",
            "The right-hand rule.",
            {DirectionCheck("+90 deg about X takes +Y to", {0, 0, 1}, Rotated({0, 1, 0}, 90, X, zero)),
             DirectionCheck("+90 deg about Y takes +Z to", {1, 0, 0}, Rotated({0, 0, 1}, 90, Y, zero)),
             DirectionCheck("+90 deg about Z takes +X to", {0, 1, 0}, Rotated({1, 0, 0}, 90, Z, zero)),
             DirectionCheck("+90 deg about Z through (1, 2, 3) takes (2, 2, 3) to", {1, 3, 3},
                            Rotated({2, 2, 3}, 90, Z, CMaPoint(1.0, 2.0, 3.0)))}};
}

/// Between the Y axis and an upright plane that leans out of it by the triangle's angle, to one side or the other.
double AngleWithLeaningPlane(double side) {
    CMaPointArray linePoints;
    CMaPointArray planePoints;
    for (const double step : {0.0, -10.0}) linePoints.Add(CMaPoint(0.0, step, 0.0));
    for (const double height : {0.0, 5.0}) {
        for (const double step : {0.0, 5.0}) {
            planePoints.Add(CMaPoint(side * triangleSine * step, triangleCosine * step, height));
        }
    }
    CMaLine line;
    CMaPlane plane;
    line.Fit(linePoints);
    plane.Fit(planePoints);
    return line.AngleWith(plane);
}

SelfCheckGroup AngleChecks() {
    return {"AngleWith has no sign",
            "The angle of a 3-4-5 triangle.",
            {AngleCheck("Y axis with a plane that leans to -X", triangleAngle, AngleWithLeaningPlane(-1.0)),
             AngleCheck("Y axis with a plane that leans to +X", triangleAngle, AngleWithLeaningPlane(1.0))}};
}

SelfCheckGroup QuaternionChecks() {
    return component::CatchingCodes("CQuaternion", [] {
        constexpr double quarter = std::numbers::pi / 2.0;
        CQuaternion aboutZ;
        aboutZ.InitialiseFromAngleAndDirection(quarter, {0, 0, 1});
        CQuaternion aboutX;
        aboutX.InitialiseFromAngleAndDirection(quarter, {1, 0, 0});
        return SelfCheckGroup{
            "Quaternions are right-handed, the right factor turns first",
            "The right-hand rule: X first takes +Y to +Z, which Z leaves alone.",
            {DirectionCheck("a quarter about Z takes +X to", {0, 1, 0}, NumbersOf(*aboutZ.RotateVector({1, 0, 0}))),
             DirectionCheck("a quarter about X, then Z, takes +Y to", {0, 0, 1},
                            NumbersOf(*aboutZ.Multiply(aboutX)->RotateVector({0, 1, 0})))}};
    });
}

SelfCheckGroup SquareHeadChecks(component::Calculator& calculator) {
    const auto engagement = [&](const model::HeadAngles& angles) {
        return NumbersOf(PlanFrom(calculator, angles, angles).EngageWithPeg);
    };
    const RequiredMoves turnB = PlanFrom(calculator, {0, 0}, {90, 90});
    const RequiredMoves wholeTurn = PlanFrom(calculator, {0, -180}, {0, 180});
    return {"A square head at the origin",
            "Worked by hand: minus the drive cup (-6.95, 24, -11.5), turned by A about (-1, 0, 0), then by B about Z.",
            {LengthCheck("head centre", {0, 0, 0}, NumbersOf(calculator.PoleSpherePosition())),
             LengthCheck("engagement at A 0, B 0", {6.95, -24, 11.5}, engagement({0, 0})),
             LengthCheck("engagement at A 90, B 0", {6.95, 11.5, 24}, engagement({90, 0})),
             LengthCheck("engagement at A 0, B 90", {24, 6.95, 11.5}, engagement({0, 90})),
             DirectionCheck("A axis at B 0", {-1, 0, 0}, AxisOf(turnB.IntermediateAPosition)),
             DirectionCheck("A axis at B 90", {0, -1, 0}, AxisOf(turnB.MoveToAPosition)),
             DirectionCheck("B axis", {0, 0, 1}, AxisOf(turnB.MoveToBPosition)),
             AngleCheck("B -180 to 180 is a whole turn of", -360.0, wholeTurn.MoveToBPosition.RotationAngle)}};
}

SelfCheckGroup IndexingChecks(component::Calculator& calculator) {
    const RequiredMoves moves = PlanFrom(calculator, {15, -60}, {75, 150});
    const Numbers target{-8.46712151623374, -0.76548465997647, 26.1586388496166};
    const Numbers leftHanded = ExecuteIndexing(moves, Sense::LeftHanded);
    const Numbers rightHanded = ExecuteIndexing(moves, Sense::RightHanded);
    const Numbers atPeg = Execute(moves.RotateToPeg, NumbersOf(moves.DisengageFromUnLockLever), Sense::LeftHanded);
    return {"Arcs are left-handed: the indexing from A 15, B -60 to A 75, B 150",
            "Worked with 40 digits from the closed formulas; the same head.",
            {AngleCheck("arc to A 0", 15.0, moves.IntermediateAPosition.RotationAngle),
             AngleCheck("arc to B 150", -210.0, moves.MoveToBPosition.RotationAngle),
             AngleCheck("arc to A 75", -75.0, moves.MoveToAPosition.RotationAngle),
             LengthCheck("engagement at A 75, B 150", target,
                         NumbersOf(PlanFrom(calculator, {75, 150}, {75, 150}).EngageWithPeg)),
             LengthCheck("the three arcs end, left-handed, at", target, leftHanded),
             LengthCheck("left-handed they miss by", {0}, {DistanceBetween(leftHanded, target)}),
             LengthCheck("right-handed they would end at", {20.623753466559, 16.630680990376, -7.39146418153699},
                         rightHanded),
             LengthCheck("right-handed they would miss by", {47.6918756184}, {DistanceBetween(rightHanded, target)}),
             AngleCheck("RotateToPeg ends, left-handed, on the bearing of ApproachPeg",
                        Bearing(NumbersOf(moves.ApproachPeg)), Bearing(atPeg))}};
}

/// A turn of 180 degrees with a pi that is too short leaves as much of a sine as the pi lacks.
double PiInUse(const RequiredMoves& halfTurnOfB) {
    return std::numbers::pi - std::abs(halfTurnOfB.MoveToAPosition.jRotationVector);
}

/// From the arc of a known tangent, beyond a quarter turn: 180 less the arctangent in degrees.
double DegreesInARadianInUse(const RequiredMoves& fromZero) {
    // Unlocked lever (30.3, 19.3), approach to the peg (6.95, -34): cross product over scalar product.
    constexpr double tangent = 1164.335 / 445.615;
    return (180.0 - std::abs(fromZero.RotateToPeg.RotationAngle)) / std::atan(tangent);
}

SelfCheckGroup ConstantChecks(component::Calculator& calculator) {
    // A tenth of what tells each from the exact constant would be lost in rounding; a third is not.
    constexpr double piTolerance = 1e-15;
    constexpr double factorTolerance = 2.5e-14;
    const RequiredMoves moves = PlanFrom(calculator, {0, 0}, {0, 180});
    return {
        "The two constants that are meant not to be exact",
        "Design: pi cut to 14 decimals (exact: 3.141592653589793), and the factor to it (exact: 57.29577951308232).",
        {{"pi in the head's turns", {3.14159265358979}, {PiInUse(moves)}, "rad", piTolerance},
         {"factor in the angles about the pole",
          {57.29577951308238},
          {DegreesInARadianInUse(moves)},
          "deg/rad",
          factorTolerance}}};
}

SelfCheckGroup TurnedHeadChecks(component::Calculator& calculator) {
    const RequiredMoves moves = PlanFrom(calculator, {0, 0}, {0, 90});
    return {
        "A head mounted turned by the angle of a 3-4-5 triangle",
        "Worked by hand: head centre (300, -200, -500); offset (x, y, z) becomes (0.8 x - 0.6 y, 0.6 x + 0.8 y, z).",
        {AngleCheck("turned about Z by", triangleAngle, RotationOf(headTurnedLeft)),
         AngleCheck("the same to the other side", -triangleAngle, RotationOf(headTurnedRight)),
         LengthCheck("head centre and pole sphere", {300, -200, -500}, NumbersOf(calculator.PoleSpherePosition())),
         LengthCheck("ApproachUnLockLever, lever at +X", {338.82, -201.26, -536.55},
                     NumbersOf(moves.ApproachUnLockLever)),
         LengthCheck("EngageWithUnLockLever", {335.82, -197.26, -536.55}, NumbersOf(moves.EngageWithUnLockLever)),
         LengthCheck("UnLock, origin", {325.44, -183.42, -536.25}, OriginOf(moves.UnLock)),
         DirectionCheck("UnLock, axis", {-0.8, -0.6, 0}, AxisOf(moves.UnLock)),
         AngleCheck("UnLock, angle", -135.0, moves.UnLock.RotationAngle),
         LengthCheck("DisengageFromUnLockLever", {312.66, -166.38, -465}, NumbersOf(moves.DisengageFromUnLockLever)),
         LengthCheck("MoveToPegAtSafeZ", {325.96, -223.03, -465}, NumbersOf(moves.MoveToPegAtSafeZ)),
         LengthCheck("ApproachPeg", {325.96, -223.03, -488.5}, NumbersOf(moves.ApproachPeg)),
         LengthCheck("EngageWithPeg", {319.96, -215.03, -488.5}, NumbersOf(moves.EngageWithPeg)),
         LengthCheck("EngageWithLockLever, lever at -X", {264.18, -202.74, -536.55},
                     NumbersOf(moves.EngageWithLockLever)),
         LengthCheck("Lock, origin", {274.56, -216.58, -536.25}, OriginOf(moves.Lock)),
         DirectionCheck("Lock, axis", {0.8, 0.6, 0}, AxisOf(moves.Lock)),
         AngleCheck("Lock, angle", -138.0, moves.Lock.RotationAngle),
         LengthCheck("DisengageFromLockLever", {287.34, -233.62, -526.55}, NumbersOf(moves.DisengageFromLockLever))}};
}

SelfCheckGroup LeverChecks(component::Calculator& calculator) {
    const Numbers positive{338.82, -201.26, -536.55};
    const Numbers negative{290.34, -237.62, -536.55};
    return {"Which lever",
            "The same head; locked approach (30.3 or -30.3, -24.3, -36.55). B = 0 counts as negative.",
            {LengthCheck("A 0, B 0: lever at +X", positive, StartFrom(calculator, {0, 0})),
             LengthCheck("A 0, B 15: lever at -X", negative, StartFrom(calculator, {0, 15})),
             LengthCheck("A 15, B 0: lever at -X", negative, StartFrom(calculator, {15, 0})),
             LengthCheck("A 15, B 15: lever at +X", positive, StartFrom(calculator, {15, 15})),
             LengthCheck("A 0, B 180: lever at -X", negative, StartFrom(calculator, {0, 180})),
             LengthCheck("A 0, B -180: lever at +X", positive, StartFrom(calculator, {0, -180}))}};
}

} // namespace

double SelfCheck::Difference() const {
    double largest = 0.0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const double difference = std::abs(got[i] - expected[i]);
        if (std::isnan(difference)) return std::numeric_limits<double>::quiet_NaN();
        largest = std::max(largest, difference);
    }
    return largest;
}

std::vector<SelfCheckGroup> RunSelfChecks() {
    component::Calculator calculator;
    const settings::BuiltInSettings settings;
    std::vector<SelfCheckGroup> groups{RotateChecks(), AngleChecks(), QuaternionChecks()};
    Enter(squareHead, calculator);
    groups.push_back(SquareHeadChecks(calculator));
    groups.push_back(IndexingChecks(calculator));
    groups.push_back(ConstantChecks(calculator));
    Enter(headTurnedLeft, calculator);
    groups.push_back(TurnedHeadChecks(calculator));
    groups.push_back(LeverChecks(calculator));
    return groups;
}

} // namespace qmv40::selfcheck
