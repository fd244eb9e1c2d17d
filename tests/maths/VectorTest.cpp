#include "maths/CMaMatrix.h"
#include "maths/CMaPlane.h"
#include "tests/maths/ExactVector.h"
#include "tests/maths/GeometryChecks.h"

#include <limits>
#include <memory>
#include <type_traits>

using namespace qmv40;

namespace {

constexpr auto impossible = GeometryError::Reason::Impossible;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

void ExpectComponents(const CMaVector& v, double x, double y, double z) {
    EXPECT_EQ(v[0], x);
    EXPECT_EQ(v[1], y);
    EXPECT_EQ(v[2], z);
}

template <typename A, typename B>
concept Subtractable = requires(A a, B b) {
    a - b;
};

} // namespace

TEST(Vector, HoldsThreeComponentsThatCanBeReadAndWritten) {
    CMaVector v(1.5, -2.5, 3.5);
    const CMaVector& read = v;
    static_assert(std::is_same_v<decltype(read[0]), double>, "read by value");
    v[1] = 7.0;
    ExpectComponents(read, 1.5, 7.0, 3.5);
}

TEST(Vector, RefusesAnIndexOutOfRange) {
    CMaVector v(1.0, 2.0, 3.0);
    const CMaVector& read = v;
    for (const int index : {-1, 3, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_TRUE(FailsWith(impossible, [&] { static_cast<void>(read[index]); })) << index;
        EXPECT_TRUE(FailsWith(impossible, [&] { v[index] = 0.0; })) << index;
    }
}

TEST(Vector, IsAValueWhoseAssignmentReturnsTheTarget) {
    const CMaVector original(1.0, 2.0, 3.0);
    CMaVector copy(original);
    CMaVector target(0.0, 0.0, 0.0);
    EXPECT_EQ(&(target = copy), &target);
    copy[0] = 9.0;
    ExpectComponents(target, 1.0, 2.0, 3.0);
    ExpectComponents(original, 1.0, 2.0, 3.0);
}

TEST(Vector, CanBeDeletedThroughItsBaseClass) {
    static_assert(std::has_virtual_destructor_v<CMaVector> && std::has_virtual_destructor_v<CMaPoint> &&
                  std::has_virtual_destructor_v<CMaMatrix> && std::has_virtual_destructor_v<CMaPlane> &&
                  std::has_virtual_destructor_v<CMaCircle>);
    const std::unique_ptr<CMaObject> vector = std::make_unique<CMaVector>(1.0, 2.0, 3.0);
    EXPECT_NE(vector, nullptr);
}

TEST(Vector, HasNoSubtraction) { static_assert(!Subtractable<CMaVector, CMaVector>); }

TEST(Vector, AddsByComponentsAndDoesNotChangeItsOperands) {
    const CMaVector a(1.0, 2.0, 3.0), b(10.0, 20.0, 30.0);
    ExpectComponents(a + b, 11.0, 22.0, 33.0);
    ExpectComponents(a + b * -1.0, -9.0, -18.0, -27.0);
    ExpectComponents(a, 1.0, 2.0, 3.0);
    ExpectComponents(b, 10.0, 20.0, 30.0);
}

TEST(Vector, ScalesEveryComponent) { ExpectComponents(CMaVector(1.0, -2.0, 0.5) * 4.0, 4.0, -8.0, 2.0); }

TEST(Vector, CrossProductIsRightHanded) {
    const CMaVector x(1.0, 0.0, 0.0), y(0.0, 1.0, 0.0), z(0.0, 0.0, 1.0);
    ExpectComponents(x * y, 0.0, 0.0, 1.0);
    ExpectComponents(y * z, 1.0, 0.0, 0.0);
    ExpectComponents(z * x, 0.0, 1.0, 0.0);
    ExpectComponents(y * x, 0.0, 0.0, -1.0);
    ExpectComponents(CMaVector(2.0, 3.0, 5.0) * CMaVector(7.0, 11.0, 13.0), -16.0, 9.0, 1.0); // by hand
}

TEST(Vector, DotProductOfOppositeUnitVectorsIsMinusOne) {
    EXPECT_EQ(CMaVector(1.0, 0.0, 0.0) % CMaVector(-1.0, 0.0, 0.0), -1.0);
    EXPECT_EQ(CMaVector(2.0, 3.0, 5.0) % CMaVector(7.0, 11.0, 13.0), 112.0);
}

TEST(Vector, MagnitudeIsTheEuclideanLengthAtAnySize) {
    constexpr double tiny = std::numeric_limits<double>::denorm_min();
    struct {
        CMaVector v;
        double length;
        const char* why;
    } const cases[] = {
        {{0.0, 0.0, 0.0}, 0.0, "the zero vector"},
        {{-0.0, 0.0, -0.0}, 0.0, "signs of zero"},
        {{2.0, 3.0, 6.0}, 7.0, "a box whose sides and diagonal are whole numbers"},
        {{-2e200, 3e200, 6e200}, 7e200, "squares overflow"},
        {{2e-200, 3e-200, -6e-200}, 7e-200, "squares underflow"},
        {{3.0 * 0x1p-1070, 0.0, 4.0 * 0x1p-1070}, 5.0 * 0x1p-1070, "subnormal"},
        {{tiny, 0.0, 0.0}, tiny, "the smallest double"},
        {{0.0, tiny, 0.0}, tiny, "the smallest double, along Y"},
        {{0.0, 0.0, -tiny}, tiny, "the smallest double, along Z"},
        {{1e-300, 1e-300, 0x1p1023}, 0x1p1023, "of very different sizes"},
        {{0x1p1023, 0.0, 0.0}, 0x1p1023, "near the largest"},
        {{1e-300, 1e300, 0.0}, 1e300, "far apart in size"},
        {{1.0, -infinity, 2.0}, infinity, "infinite"},
        {{notANumber, infinity, 2.0}, infinity, "infinity beside not-a-number"},
    };
    for (const auto& [v, length, why] : cases) EXPECT_DOUBLE_EQ(v.Magnitude(), length) << why;
    EXPECT_TRUE(std::isnan(CMaVector(1.0, notANumber, 2.0).Magnitude()));
}

TEST(Point, HasWritableCoordinates) {
    CMaPoint p(1.0, 2.0, 3.0);
    p.x() = 4.0;
    p.y() += 1.0;
    p.z() = -6.0;
    const CMaPoint& read = p;
    EXPECT_EQ(read.x(), 4.0);
    EXPECT_EQ(read.y(), 3.0);
    EXPECT_EQ(read.z(), -6.0);
    ExpectComponents(p.To3DVector(), 4.0, 3.0, -6.0);
}

TEST(Point, IsProjectedOntoAPlaneAlongItsNormal) {
    CMaPlane plane; // x + y + z = 3
    plane.Fit(ArrayOf({{3.0, 0.0, 0.0}, {0.0, 3.0, 0.0}, {0.0, 0.0, 3.0}}));
    const CMaPoint foot =
        CMaPoint(5.0, 3.0, 1.0).ProjectionOn(plane); // the sum is 6 too large: each coordinate is reduced by 2
    constexpr double fewRoundings = 4e-15;
    EXPECT_NEAR(foot.x(), 3.0, fewRoundings);
    EXPECT_NEAR(foot.y(), 1.0, fewRoundings);
    EXPECT_NEAR(foot.z(), -1.0, fewRoundings);
    EXPECT_LT(Distance(foot.ProjectionOn(plane), foot), fewRoundings) << "a second time changes nothing";
}

namespace {

/// The foot of the perpendicular, with 32 digits. The plane contains the stored point and is perpendicular to the
/// stored normal, whose length is not exactly 1.
ExactVector ExactFoot(const CMaPoint& p, const CMaPlane& plane) {
    const auto exactly = [](const CMaVector& v) { return ExactVector{v[0], v[1], v[2]}; };
    const ExactVector point = exactly(p.To3DVector()), normal = UnitAlong(exactly(plane.GetNormal()));
    return Across(Minus(point, exactly(plane.GetPoint().To3DVector())), normal);
}

} // namespace

TEST(Point, ProjectsAsExactlyAsItsHeaderStates) {
    constexpr double ulp = std::numeric_limits<double>::epsilon(); // relative: the largest, that of a power of two
    std::mt19937_64 random(61);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int round = 0; round < 3000; ++round) {
        SCOPED_TRACE("seed 61, round " + std::to_string(round));
        const double away = std::pow(10.0, round % 10 - 3), size = std::pow(10.0, round % 7 - 3);
        const RandomFrame frame(random), place(random);
        const auto at = [&](double u, double v, double w) {
            return CoordinatesOf(VectorOf(frame.At(u, v, w)) + place.first * away);
        };
        CMaPlane plane;
        plane.Fit(ArrayOf({at(size, 0.0, 0.0), at(0.0, size, 0.0), at(-size, -size, 0.0)}));
        const Coordinates q = at(size * uniform(random), size * uniform(random), 10.0 * size * uniform(random));
        const CMaPoint from(q[0], q[1], q[2]), foot = from.ProjectionOn(plane);
        const ExactVector exact = ExactFoot(from, plane);
        const CMaVector base = plane.GetPoint().To3DVector(), result = foot.To3DVector(), start = from.To3DVector();
        const double distance = Distance(start, base);
        for (int i = 0; i < 3; ++i) {
            const DoubleDouble error = DoubleDouble(result[i]) - base[i] - exact[static_cast<std::size_t>(i)];
            const double larger = std::max(std::fabs(result[i]), std::fabs(start[i]));
            EXPECT_LE(std::fabs(static_cast<double>(error)), ulp * (larger + 4.0 * distance));
        }
    }
}

TEST(Point, ProjectsWhereDifferencesOfCoordinatesOverflow) {
    constexpr double large = 1.7e308;
    CMaPlane plane;
    plane.Fit(ArrayOf({{-large, 0.0, 0.0}, {-large, 1e300, 0.0}, {-large, 0.0, 1e300}}));
    const CMaPoint foot = CMaPoint(large, 0.0, 0.0).ProjectionOn(plane);
    EXPECT_FALSE(std::isfinite(foot.x())) << "the distance itself is beyond the largest double";
    plane.Fit(ArrayOf({{-large, 0.0, 0.0}, {large, 0.0, 0.0}, {-large, 0.0, large}}));
    const CMaPoint inside = CMaPoint(large, 1.0, large).ProjectionOn(plane);
    EXPECT_NEAR(inside.x() / large, 1.0, 1e-15);
    EXPECT_NEAR(inside.z() / large, 1.0, 1e-15);
}

TEST(PointArray, StartsEmptyWhateverItsCapacity) {
    for (const int capacity : {0, 100, -5}) EXPECT_EQ(CMaPointArray(capacity).GetSize(), 0) << capacity;
}

TEST(PointArray, KeepsCopiesInTheOrderOfAdding) {
    CMaPointArray array;
    CMaPoint p(0.0, 0.0, 0.0);
    for (int i = 0; i < 1000; ++i) {
        p.x() = i;
        p.z() = -i;
        array.Add(p);
    }
    ASSERT_EQ(array.GetSize(), 1000);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(array[i].x(), i);
        EXPECT_EQ(array[i].y(), 0.0);
        EXPECT_EQ(array[i].z(), -i);
    }
    EXPECT_EQ(array.X()[999], 999.0);
    EXPECT_EQ(array.Y().size(), 1000U);
    EXPECT_EQ(array.Z()[999], -999.0);
}

TEST(PointArray, ReturnsPointsByValue) {
    CMaPointArray array = ArrayOf({{1.0, 2.0, 3.0}});
    array[0] = CMaPoint(7.0, 8.0, 9.0);
    array[0].x() = 11.0;
    EXPECT_EQ(array[0].x(), 1.0);
}

TEST(PointArray, CopiesDeeplyAndClears) {
    CMaPointArray array = ArrayOf({{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}});
    CMaPointArray copy;
    copy = array;
    array.Clear();
    EXPECT_EQ(array.GetSize(), 0);
    ASSERT_EQ(copy.GetSize(), 2);
    EXPECT_EQ(copy[1].y(), 5.0);
}

TEST(PointArray, RefusesAnIndexOutOfRange) {
    const CMaPointArray array = ArrayOf({{1.0, 2.0, 3.0}});
    for (const int index : {-1, 1, std::numeric_limits<int>::max()})
        EXPECT_TRUE(FailsWith(impossible, [&] { array[index]; })) << index;
    EXPECT_TRUE(FailsWith(impossible, [] { CMaPointArray()[0]; }));
}

TEST(Matrix, MultipliesAColumnFromTheLeft) {
    CMaMatrix m(3, 3);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column) m.SetElement(row, column, 3.0 * row + column + 1.0);
    ExpectComponents(m * CMaVector(1.0, 10.0, 100.0), 321.0, 654.0, 987.0);
}

TEST(Matrix, RefusesInvalidSizesAndIndices) {
    for (const auto& [rows, columns] : {std::pair(0, 3), {4, 3}, {3, 0}, {3, 4}, {-1, 1}})
        EXPECT_TRUE(FailsWith(impossible, [&, r = rows, c = columns] { CMaMatrix(r, c); })) << rows << " x " << columns;
    CMaMatrix m(2, 3);
    m.SetElement(1, 2, 1.0);
    for (const auto& [row, column] : {std::pair(-1, 0), {2, 0}, {0, -1}, {0, 3}})
        EXPECT_TRUE(FailsWith(impossible, [&, r = row, c = column] { m.SetElement(r, c, 1.0); }))
            << row << ' ' << column;
    EXPECT_TRUE(FailsWith(impossible, [&] { m* CMaVector(1.0, 2.0, 3.0); })) << "not 3 x 3";
}
