#pragma once

#include "head/RoundThePole.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/Failures.h"
#include "tools/model/Angles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// Helpers of the tests of the head model.

using Triple = qmv40::model::Vector3;
using AlignmentPoints = std::vector<HeadAlignmentDataItem>;

inline Triple TripleOf(const CMaVector& vector) { return {vector[0], vector[1], vector[2]}; }

/// The vector that a query returns in its out parameter.
template <class Query> Triple Answer(Query&& query) {
    CMaVector out(std::nan(""), std::nan(""), std::nan(""));
    std::forward<Query>(query)(out);
    return TripleOf(out);
}

/// A query for one lever.
using LeverQuery = void (RoundThePole::*)(int, CMaVector&) const;
inline Triple AnswerFor(const RoundThePole& head, LeverQuery query, int lever) {
    return Answer([&](CMaVector& out) { (head.*query)(lever, out); });
}

/// A position of the levers, and its built-in offset from the head centre.
struct LeverPosition {
    LeverQuery query;
    Triple offset; ///< of lever 0
    const char* name;

    Triple OffsetOf(int lever) const { return {lever == 0 ? offset.x : -offset.x, offset.y, offset.z}; }
};
inline const LeverPosition leverPositions[] = {
    {&RoundThePole::LeverCentrePosition, {30.3, 0.0, -32.25}, "lever centre"},
    {&RoundThePole::LeverLockedPosition, {30.3, -19.3, -32.25 + -4.3}, "locked ball"},
    {&RoundThePole::LeverLockedApproachPosition, {30.3, -19.3 - 5.0, -32.25 + -4.3}, "locked approach"},
    {&RoundThePole::LeverUnlockingCentreOfRotation, {30.3, -2.0, -32.25 + -4.0}, "unlocking centre"},
    {&RoundThePole::LeverUnlockedPosition, {30.3, 19.3, -32.25 + -4.3}, "unlocked ball"},
    {&RoundThePole::LeverUnlockedApproachPosition, {30.3, 19.3 + 5.0, -32.25 + -4.3}, "unlocked approach"},
    {&RoundThePole::LeverLockingCentreOfRotation, {30.3, 2.0, -32.25 + -4.0}, "locking centre"}};

/// Rotates right-handed about the vertical through the origin, with the full pi.
inline Triple TurnedAboutZ(const Triple& v, double angleDegrees) {
    return AboutZ(qmv40::model::Rotation(qmv40::model::ToRadians(angleDegrees)), v);
}

namespace qmv40::model {

inline void PrintTo(const Vector3& v, std::ostream* out) { *out << '(' << v.x << ", " << v.y << ", " << v.z << ')'; }

} // namespace qmv40::model

/// Whether the distance of two points or directions is at most `tolerance`. False if a coordinate is not a number.
inline testing::AssertionResult AreNear(const Triple& actual, const Triple& expected, double tolerance) {
    if (Distance(actual, expected) <= tolerance) return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(actual) << " is " << Distance(actual, expected)
                                       << " from " << testing::PrintToString(expected);
}

/// The alignment points of an array, in their order.
inline std::vector<Triple> PointsOf(const CMaPointArray& array) {
    std::vector<Triple> points;
    for (int i = 0; i < array.GetSize(); ++i) points.push_back(TripleOf(array[i].To3DVector()));
    return points;
}

inline std::vector<Triple> PointsOf(const AlignmentPoints& items) {
    std::vector<Triple> points;
    for (const HeadAlignmentDataItem& item : items) points.push_back({item.XPosition, item.YPosition, item.ZPosition});
    return points;
}

inline CMaPointArray ArrayOf(const std::vector<Triple>& points) {
    CMaPointArray array(0);
    for (const Triple& point : points) array.Add(CMaPoint(point[0], point[1], point[2]));
    return array;
}

/// Items at the given points, with the same A and B everywhere.
inline AlignmentPoints ItemsAt(const std::vector<Triple>& points, double a, double b) {
    AlignmentPoints items;
    for (const Triple& point : points) items.push_back({a, b, point[0], point[1], point[2]});
    return items;
}

/// Calls ComputeGeometry with these two sets and returns its failure.
inline Raised Computing(RoundThePole& head, const AlignmentPoints& aPoints, const AlignmentPoints& bPoints) {
    AlignmentArray a(aPoints);
    AlignmentArray b(bPoints);
    return RaisedBy([&] { head.ComputeGeometry(a.Address(), b.Address()); });
}
