#include "tools/selfcheck/SelfChecks.h"

#include "tools/component/Calculator.h"
#include "tools/model/SimulatedCapture.h"
#include "tools/model/Turning.h"
#include "tools/plans/PlannedMove.h"
#include "tools/settings/SettingsOverride.h"

#include <algorithm>
#include <limits>

namespace qmv40::selfcheck {

namespace {

// Coordinates of some hundreds of millimetres have rounding errors of about 1e-13. A wrong sign or dimension changes
// them by more than a micrometre.
constexpr double lengthTolerance = 1e-9;
constexpr double angleTolerance = 1e-9;
constexpr double directionTolerance = 1e-12;

// The angle of the 3-4-5 triangle: its cosine is 0.8, its sine 0.6.
constexpr double triangleAngle = 36.86989764584402;

using Numbers = std::vector<double>;

Numbers NumbersOf(const model::Vector3& v) { return {v.x, v.y, v.z}; }
Numbers NumbersOf(const XYZData& position) { return NumbersOf(plans::VectorOf(position)); }
Numbers AxisOf(const ArcData& arc) { return NumbersOf(plans::RotationVectorOf(arc)); }

SelfCheck LengthCheck(std::string what, Numbers expected, Numbers got) {
    return {std::move(what), std::move(expected), std::move(got), "mm", lengthTolerance};
}
SelfCheck AngleCheck(std::string what, double expected, double got) {
    return {std::move(what), {expected}, {got}, "deg", angleTolerance};
}
SelfCheck DirectionCheck(std::string what, Numbers expected, Numbers got) {
    return {std::move(what), std::move(expected), std::move(got), "", directionTolerance};
}

using Head = model::SimulatedHead<HeadAlignmentDataItem>;

constexpr Head squareHead;
constexpr Head headTurnedLeft{.pole = {300.0, -200.0, -500.0}, .mountingAngle = triangleAngle};
constexpr Head headTurnedRight{.pole = {300.0, -200.0, -500.0}, .mountingAngle = -triangleAngle};

void Enter(const Head& head, component::Calculator& calculator) {
    calculator.EnterHeadGeometry(head.ASet(0.0), head.BSet(90.0));
}

RequiredMoves PlanFrom(component::Calculator& calculator, const model::HeadAngles& from, const model::HeadAngles& to) {
    calculator.SetCurrentHeadPosition(from);
    return calculator.CalculateMove(to);
}

Numbers StartFrom(component::Calculator& calculator, const model::HeadAngles& from) {
    calculator.SetCurrentHeadPosition(from);
    return NumbersOf(calculator.StartPosition());
}

/// The machine position after an arc that is executed left-handed (-1), as required, or right-handed (1).
model::Vector3 Execute(const ArcData& arc, const model::Vector3& from, double hand = -1.0) {
    return model::Turning{plans::OriginOf(arc), plans::RotationVectorOf(arc), hand * arc.RotationAngle}.Carried(from);
}

model::Vector3 ExecuteIndexing(const RequiredMoves& moves, double hand) {
    model::Vector3 position = plans::VectorOf(moves.EngageWithPeg);
    for (const ArcData* const arc : {&moves.IntermediateAPosition, &moves.MoveToBPosition, &moves.MoveToAPosition}) {
        position = Execute(*arc, position, hand);
    }
    return position;
}

/// Azimuth from the X axis, degrees, as seen from the head centre, which is the origin.
double Azimuth(const model::Vector3& position) { return model::ToDegrees(std::atan2(position.y, position.x)); }

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
    const model::Vector3 target{-8.46712151623374, -0.76548465997647, 26.1586388496166};
    const model::Vector3 leftHanded = ExecuteIndexing(moves, -1.0);
    const model::Vector3 rightHanded = ExecuteIndexing(moves, 1.0);
    const model::Vector3 atPeg = Execute(moves.RotateToPeg, plans::VectorOf(moves.DisengageFromUnLockLever));
    return {"Arcs are left-handed: the indexing from A 15, B -60 to A 75, B 150",
            "Worked with 40 digits from the closed formulas; the same head.",
            {AngleCheck("arc to A 0", 15.0, moves.IntermediateAPosition.RotationAngle),
             AngleCheck("arc to B 150", -210.0, moves.MoveToBPosition.RotationAngle),
             AngleCheck("arc to A 75", -75.0, moves.MoveToAPosition.RotationAngle),
             LengthCheck("engagement at A 75, B 150", NumbersOf(target),
                         NumbersOf(PlanFrom(calculator, {75, 150}, {75, 150}).EngageWithPeg)),
             LengthCheck("the three arcs end, left-handed, at", NumbersOf(target), NumbersOf(leftHanded)),
             LengthCheck("left-handed they miss by", {0}, {Distance(leftHanded, target)}),
             LengthCheck("right-handed they would end at", {20.623753466559, 16.630680990376, -7.39146418153699},
                         NumbersOf(rightHanded)),
             LengthCheck("right-handed they would miss by", {47.6918756184}, {Distance(rightHanded, target)}),
             AngleCheck("RotateToPeg ends, left-handed, at the azimuth of ApproachPeg",
                        Azimuth(plans::VectorOf(moves.ApproachPeg)), Azimuth(atPeg))}};
}

/// The pi that the build uses: the sine of 180 degrees shows how much is missing to the exact pi.
double PiInUse(const RequiredMoves& halfTurnOfB) {
    return std::numbers::pi - std::abs(halfTurnOfB.MoveToAPosition.jRotationVector);
}

/// Degrees in one radian that the build uses, from an arc whose tangent is known: 180 minus the arctangent in degrees.
double DegreesInARadianInUse(const RequiredMoves& fromZero) {
    // Seen from the pole, the unlocked lever is at (30.3, 19.3) and the approach to the peg at (6.95, -34): cross
    // product over scalar product, without their signs.
    constexpr double tangent = 1164.335 / 445.615;
    return (180.0 - std::abs(fromZero.RotateToPeg.RotationAngle)) / std::atan(tangent);
}

SelfCheckGroup ConstantChecks(component::Calculator& calculator) {
    // Less than half of the difference to the exact constant; a tenth of it would be lost in rounding.
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
        {LengthCheck("head centre and pole sphere", {300, -200, -500}, NumbersOf(calculator.PoleSpherePosition())),
         LengthCheck("ApproachUnLockLever, lever at +X", {338.82, -201.26, -536.55},
                     NumbersOf(moves.ApproachUnLockLever)),
         LengthCheck("EngageWithUnLockLever", {335.82, -197.26, -536.55}, NumbersOf(moves.EngageWithUnLockLever)),
         LengthCheck("UnLock, origin", {325.44, -183.42, -536.25}, NumbersOf(plans::OriginOf(moves.UnLock))),
         DirectionCheck("UnLock, axis", {-0.8, -0.6, 0}, AxisOf(moves.UnLock)),
         AngleCheck("UnLock, angle", -135.0, moves.UnLock.RotationAngle),
         LengthCheck("DisengageFromUnLockLever", {312.66, -166.38, -465}, NumbersOf(moves.DisengageFromUnLockLever)),
         LengthCheck("MoveToPegAtSafeZ", {325.96, -223.03, -465}, NumbersOf(moves.MoveToPegAtSafeZ)),
         LengthCheck("ApproachPeg", {325.96, -223.03, -488.5}, NumbersOf(moves.ApproachPeg)),
         LengthCheck("EngageWithPeg", {319.96, -215.03, -488.5}, NumbersOf(moves.EngageWithPeg)),
         LengthCheck("EngageWithLockLever, lever at -X", {264.18, -202.74, -536.55},
                     NumbersOf(moves.EngageWithLockLever)),
         LengthCheck("Lock, origin", {274.56, -216.58, -536.25}, NumbersOf(plans::OriginOf(moves.Lock))),
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

SelfCheckGroup OtherSideChecks(component::Calculator& calculator) {
    const RequiredMoves moves = PlanFrom(calculator, {0, 0}, {0, 90});
    return {"The same head mounted turned to the other side",
            "Worked by hand: offset (x, y, z) becomes (0.8 x + 0.6 y, -0.6 x + 0.8 y, z).",
            {DirectionCheck("UnLock, axis", {-0.8, 0.6, 0}, AxisOf(moves.UnLock)),
             LengthCheck("EngageWithPeg", {291.16, -223.37, -488.5}, NumbersOf(moves.EngageWithPeg))}};
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
    const settings::SettingsOverride builtIn = settings::SettingsOverride::BuiltIn();
    std::vector<SelfCheckGroup> groups;
    Enter(squareHead, calculator);
    groups.push_back(SquareHeadChecks(calculator));
    groups.push_back(IndexingChecks(calculator));
    groups.push_back(ConstantChecks(calculator));
    Enter(headTurnedLeft, calculator);
    groups.push_back(TurnedHeadChecks(calculator));
    groups.push_back(LeverChecks(calculator));
    Enter(headTurnedRight, calculator);
    groups.push_back(OtherSideChecks(calculator));
    return groups;
}

} // namespace qmv40::selfcheck
