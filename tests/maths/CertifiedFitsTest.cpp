#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "tests/maths/GeometryChecks.h"
#include "tests/support/SourceFolders.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <string>

/// Least-squares results computed with 100 digits for the stored doubles. The file gives a floor for each: the largest
/// change that the rounding of the input coordinates alone can cause.

namespace {

using Json = nlohmann::json;

/// The hardest case needs 45 evaluations. A method with linear convergence would need more.
constexpr long evaluationLimit = 45;
/// The allowed error in floors: the arithmetic has rounding errors too.
constexpr double floors = 20.0;
/// In the unit of the points: far below the resolution of any probe.
constexpr double alwaysGoodEnough = 1e-9;

std::vector<Json> Cases(const std::string& shape) {
    std::ifstream file(TestDataFolder() + "/certified/" + shape + ".json");
    return Json::parse(file).at("cases");
}

CMaPointArray PointsOf(const Json& one) {
    CMaPointArray points;
    for (const auto& p : one.at("points")) points.Add(CMaPoint(p[0], p[1], p[2]));
    return points;
}

double SizeOf(const CMaPointArray& points) {
    double size = 0.0;
    for (int i = 1; i < points.GetSize(); ++i) size = std::max(size, Distance(points[i], points[0]));
    return size;
}

long double Number(const Json& text) { return std::stold(text.get<std::string>()); }

double ErrorOf(const CMaVector& value, const Json& certified, long double sign = 1.0L) {
    long double squares = 0.0L;
    for (int i = 0; i < 3; ++i) {
        const long double difference =
            static_cast<long double>(value[i]) - sign * Number(certified[static_cast<std::size_t>(i)]);
        squares += difference * difference;
    }
    return static_cast<double>(std::sqrt(squares));
}

double ErrorOf(const CMaPoint& value, const Json& certified) { return ErrorOf(value.To3DVector(), certified); }

double DirectionErrorOf(const CMaVector& value, const Json& certified) {
    return std::min(ErrorOf(value, certified), ErrorOf(value, certified, -1.0L));
}

double Allowed(const Json& one, const char* what, double size = 1.0) {
    return std::max(floors * one.at("floor_half_ulp").at(what).get<double>(), alwaysGoodEnough / size);
}

void ExpectUnit(const CMaVector& v) {
    constexpr double unitWithin = 1e-14;
    EXPECT_NEAR(v.Magnitude(), 1.0, unitWithin);
}

} // namespace

TEST(CertifiedFits, CirclesAreRightToTheRoundingOfTheirPoints) {
    const auto cases = Cases("circle");
    ASSERT_EQ(cases.size(), 39U);
    for (const Json& one : cases) {
        SCOPED_TRACE(one.at("id").get<std::string>());
        const CMaPointArray points = PointsOf(one);
        const Json& certified = one.at("certified");
        CMaCircle circle(1.0);
        ASSERT_NO_THROW(circle.Fit(points, evaluationLimit));
        EXPECT_LE(ErrorOf(circle.GetCentre(), certified.at("center")), Allowed(one, "center"));
        EXPECT_LE(std::fabs(static_cast<double>(static_cast<long double>(circle.GetRadius()) -
                                                Number(certified.at("radius")))),
                  Allowed(one, "radius"));
        EXPECT_LE(DirectionErrorOf(circle.GetNormal(), certified.at("normal")), Allowed(one, "normal", SizeOf(points)));
        ExpectUnit(circle.GetNormal());
    }
}

TEST(CertifiedFits, LinesAreRightToTheRoundingOfTheirPoints) {
    const auto cases = Cases("line");
    ASSERT_EQ(cases.size(), 14U);
    for (const Json& one : cases) {
        SCOPED_TRACE(one.at("id").get<std::string>());
        const CMaPointArray points = PointsOf(one);
        CMaLine line;
        ASSERT_NO_THROW(line.Fit(points));
        EXPECT_LE(ErrorOf(line.GetPoint(), one.at("certified").at("point")), Allowed(one, "point"));
        EXPECT_LE(DirectionErrorOf(line.GetDirection(), one.at("certified").at("direction")),
                  Allowed(one, "direction", SizeOf(points)));
        ExpectUnit(line.GetDirection());
    }
}

TEST(CertifiedFits, PlanesAreRightToTheRoundingOfTheirPoints) {
    const auto cases = Cases("plane");
    ASSERT_EQ(cases.size(), 14U);
    for (const Json& one : cases) {
        SCOPED_TRACE(one.at("id").get<std::string>());
        const CMaPointArray points = PointsOf(one);
        CMaPlane plane;
        ASSERT_NO_THROW(plane.Fit(points));
        EXPECT_LE(ErrorOf(plane.GetPoint(), one.at("certified").at("point")), Allowed(one, "point"));
        EXPECT_LE(DirectionErrorOf(plane.GetNormal(), one.at("certified").at("normal")),
                  Allowed(one, "direction", SizeOf(points)));
        ExpectUnit(plane.GetNormal());
    }
}
