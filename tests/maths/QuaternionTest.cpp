#include "interface/ErrorCodes.h"
#include "maths/CQuaternion.h"
#include "maths/RaisingGeometryErrors.h"
#include "tests/maths/GeometryChecks.h"
#include "tests/support/ErrorRecord.h"

#include <functional>
#include <new>
#include <type_traits>
#include <utility>

using namespace qmv40;

namespace {

constexpr double pi = std::numbers::pi;
constexpr double fewRoundings = 2e-15; // of numbers of about 1

CQuaternion Turn(double radians, const CMaVector& direction) {
    CQuaternion turn;
    turn.InitialiseFromAngleAndDirection(radians, direction);
    return turn;
}

void ExpectComponents(const CQuaternion& q, double w, double x, double y, double z, double tolerance) {
    EXPECT_NEAR(q.GetW(), w, tolerance);
    EXPECT_NEAR(q.GetX(), x, tolerance);
    EXPECT_NEAR(q.GetY(), y, tolerance);
    EXPECT_NEAR(q.GetZ(), z, tolerance);
}

/// Rodrigues' formula: `v` rotated about the unit vector `axis`.
CMaVector TurnedAbout(const CMaVector& axis, double radians, const CMaVector& v) {
    return v * std::cos(radians) + (axis * v) * std::sin(radians) + axis * ((axis % v) * (1.0 - std::cos(radians)));
}

} // namespace

TEST(Quaternion, RotatesNothingWhenNew) {
    const CQuaternion q;
    ExpectComponents(q, 1.0, 0.0, 0.0, 0.0, 0.0);
    for (const CMaVector& v : {CMaVector(1.0, 2.0, 3.0), CMaVector(-1e300, 1e-300, 0.1)})
        EXPECT_EQ(Distance(*q.RotateVector(v), v), 0.0);
}

TEST(Quaternion, TurnsXTowardsYAboutZ) {
    const CQuaternion q = Turn(pi / 2.0, {0.0, 0.0, 1.0});
    EXPECT_LT(Distance(*q.RotateVector({1.0, 0.0, 0.0}), {0.0, 1.0, 0.0}), fewRoundings);
}

TEST(Quaternion, OfAngle0IsExactlyTheIdentityForAllDirections) {
    for (const CMaVector& direction : {CMaVector(1.0, 0.0, 0.0), CMaVector(0.6, 0.0, -0.8), CMaVector(0.0, 0.0, 0.0)}) {
        const CQuaternion q = Turn(0.0, direction);
        ExpectComponents(q, 1.0, 0.0, 0.0, 0.0, 0.0);
        EXPECT_EQ(Distance(*q.RotateVector({1.0, 2.0, 3.0}), {1.0, 2.0, 3.0}), 0.0);
    }
}

TEST(Quaternion, OfAWholeTurnIsMinusOneAndRotatesNothing) {
    const CQuaternion q = Turn(2.0 * pi, {0.0, 0.6, 0.8});
    EXPECT_NEAR(q.GetW(), -1.0, fewRoundings);
    EXPECT_LT(Distance(*q.RotateVector({1.0, 2.0, 3.0}), {1.0, 2.0, 3.0}), 4.0 * fewRoundings);
}

TEST(Quaternion, ProductAppliesItsSecondFactorFirst) {
    const double alpha = 0.7, beta = -1.9;
    const CQuaternion qB = Turn(beta, {0.0, 0.0, 1.0}), qA = Turn(alpha, {1.0, 0.0, 0.0});
    const CMaVector v(1.0, 2.0, 3.0);
    const CMaVector aboutX(1.0, 2.0 * std::cos(alpha) - 3.0 * std::sin(alpha),
                           2.0 * std::sin(alpha) + 3.0 * std::cos(alpha));
    const CMaVector aboutZ(aboutX[0] * std::cos(beta) - aboutX[1] * std::sin(beta),
                           aboutX[0] * std::sin(beta) + aboutX[1] * std::cos(beta), aboutX[2]);
    EXPECT_LT(Distance(*qB.Multiply(qA)->RotateVector(v), aboutZ), 4.0 * fewRoundings);
    ExpectComponents(qA, std::cos(alpha / 2.0), std::sin(alpha / 2.0), 0.0, 0.0, fewRoundings);
}

TEST(Quaternion, ProductIsTheHamiltonProduct) {
    CQuaternion p, q;
    p.SetComponents(2.0, 3.0, 5.0, 7.0);
    q.SetComponents(11.0, 13.0, 17.0, 19.0);
    ExpectComponents(*p.Multiply(q), -235.0, 35.0, 123.0, 101.0, 0.0); // by hand
    ExpectComponents(p, 2.0, 3.0, 5.0, 7.0, 0.0);
    ExpectComponents(q, 11.0, 13.0, 17.0, 19.0, 0.0);
    const CQuaternion i = Turn(pi, {1.0, 0.0, 0.0}), j = Turn(pi, {0.0, 1.0, 0.0});
    ExpectComponents(*i.Multiply(j), 0.0, 0.0, 0.0, 1.0, fewRoundings);
    ExpectComponents(*j.Multiply(i), 0.0, 0.0, 0.0, -1.0, fewRoundings);
}

TEST(Quaternion, MatrixIsTheWrittenFormulaForAnyComponents) {
    CQuaternion q;
    q.SetComponents(2.0, 3.0, 5.0, 7.0); // never normalised
    EXPECT_EQ(Distance(*q.RotateVector({1.0, 0.0, 0.0}), {-61.0, 58.0, 22.0}), 0.0);
    EXPECT_EQ(Distance(*q.RotateVector({0.0, 1.0, 0.0}), {2.0, -29.0, 82.0}), 0.0);
    EXPECT_EQ(Distance(*q.RotateVector({0.0, 0.0, 1.0}), {62.0, 58.0, 19.0}), 0.0);
}

TEST(Quaternion, OfAZeroDirectionScalesByTheSquaredCosineOfHalfTheAngle) {
    const CQuaternion q = Turn(pi / 3.0, {0.0, 0.0, 0.0});
    EXPECT_LT(Distance(*q.RotateVector({4.0, 8.0, -12.0}), {3.0, 6.0, -9.0}), 1e-14);
}

TEST(Quaternion, AgreesWithRodriguesAndKeepsLengthsAndProducts) {
    constexpr double roundings = 1e-14; // of vectors of length about 2
    std::mt19937_64 random(2024);
    std::uniform_real_distribution<double> angle(-7.0, 7.0), component(-1.0, 1.0);
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE("seed 2024, round " + std::to_string(round));
        const RandomFrame frame(random);
        const CMaVector v(component(random), component(random), component(random));
        const double a = angle(random), b = angle(random);
        const CQuaternion p = Turn(a, frame.first), q = Turn(b, frame.second);
        EXPECT_LT(Distance(*p.RotateVector(v), TurnedAbout(frame.first, a, v)), roundings);
        EXPECT_NEAR(p.RotateVector(v)->Magnitude(), v.Magnitude(), roundings);
        EXPECT_LT(Distance(*p.Multiply(q)->RotateVector(v), *p.RotateVector(*q.RotateVector(v))), roundings);
        EXPECT_LT(Distance(*Turn(-a, frame.first).RotateVector(*p.RotateVector(v)), v), roundings);
        EXPECT_LT(Distance(*Turn(a + 2.0 * pi, frame.first).RotateVector(v), *p.RotateVector(v)), roundings);
    }
}

TEST(Quaternion, ResultsBelongToTheCaller) {
    static_assert(std::has_virtual_destructor_v<CQuaternion>);
    static_assert(std::is_same_v<decltype(CQuaternion().Multiply({})), std::unique_ptr<CQuaternion>>);
    static_assert(std::is_same_v<decltype(CQuaternion().RotateVector({0.0, 0.0, 0.0})), std::unique_ptr<CMaVector>>);
}

TEST(RaisingGeometryErrors, RaisesTheFailureOfAStepWithItsTexts) {
    ErrorContext context{L"Class::Operation"};
    context.description = L"The step under way";
    const auto impossible = [] { throw GeometryError(GeometryError::Reason::Impossible); };
    const auto limitReached = [] { throw GeometryError(GeometryError::Reason::LimitReached); };
    const std::pair<std::function<void()>, HRESULT> cases[] = {
        {impossible, QMV_E_GEOMETRY_IMPOSSIBLE},
        {limitReached, QMV_E_GEOMETRY_LIMIT_REACHED},
        {[] { throw std::bad_alloc(); }, E_OUTOFMEMORY},
    };
    for (const auto& [step, code] : cases) {
        const Raised raised = RaisedBy([&] { RaisingGeometryErrors(context, step); });
        EXPECT_EQ(raised.code, code);
        ASSERT_TRUE(raised.record);
        EXPECT_EQ(raised.record->source, L"Class::Operation");
        EXPECT_EQ(raised.record->description, L"The step under way");
    }
}

TEST(RaisingGeometryErrors, ReturnsTheResultOfTheStep) {
    const ErrorContext context{L"Class::Operation"};
    EXPECT_EQ(RaisingGeometryErrors(context, [] { return 42; }), 42);
    int number = 0;
    RaisingGeometryErrors(context, [&]() -> int& { return number; }) = 7;
    EXPECT_EQ(number, 7);
}
