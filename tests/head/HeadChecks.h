#pragma once

#include "head/RoundThePole.h"
#include "interface/ErrorCodes.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/ErrorRecord.h"
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

/// Whether a call failed with this code and set this error record.
inline testing::AssertionResult FailedWith(const Raised& raised, HRESULT code, const std::wstring& source,
                                           const std::wstring& description, const std::wstring& helpFile) {
    if (raised.code != code)
        return testing::AssertionFailure() << std::hex << "code 0x" << static_cast<unsigned long>(raised.code)
                                           << " instead of 0x" << static_cast<unsigned long>(code);
    if (!raised.record) return testing::AssertionFailure() << "no error record";
    if (raised.record->source != source)
        return testing::AssertionFailure() << "source " << testing::PrintToString(raised.record->source);
    if (raised.record->description != description)
        return testing::AssertionFailure() << "description " << testing::PrintToString(raised.record->description);
    if (raised.record->helpFile != helpFile)
        return testing::AssertionFailure() << "help file " << testing::PrintToString(raised.record->helpFile);
    return testing::AssertionSuccess();
}
