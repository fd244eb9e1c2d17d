#include "calculator/TargetAngles.h"

#include "tests/support/Failures.h"
#include "tests/support/PreparedCalculator.h"

#include <cmath>
#include <limits>

using namespace qmv40;

namespace {

using namespace failures;

constexpr const Failure* accepted = nullptr;
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Case {
    double a;
    double b;
    const Failure* refusal; ///< null: accepted
    const char* why;
};

void ExpectOutcome(const Raised& raised, const Case& c) {
    SCOPED_TRACE(testing::Message() << c.why << ": " << c.a << ", " << c.b);
    if (c.refusal != nullptr) return ExpectFailure(raised, *c.refusal);
    EXPECT_EQ(raised.code, S_OK);
}

const Case unrounded[] = {
    {0.0, 0.0, accepted, "the middle"},
    {90.0, -180.0, accepted, "bounds are inclusive"},
    {90.0, 180.0, accepted, "bounds are inclusive"},
    {0.0, -180.0, accepted, "bounds are inclusive"},
    {-0.0, -0.0, accepted, "a negative zero is not below zero"},
    {15.0, -15.0, accepted, "steps on the negative side count too"},
    {75.0, -165.0, accepted, "steps on the negative side count too"},
    {-1e-300, 0.0, &rangeOfA, "a little below zero"},
    {-15.0, 0.0, &rangeOfA, "a multiple of 15, but below zero"},
    {90.000001, 0.0, &rangeOfA, "a little beyond"},
    {std::nextafter(90.0, 91.0), 0.0, &rangeOfA, "the first number beyond"},
    {105.0, 0.0, &rangeOfA, "a multiple of 15, but beyond the range"},
    {infinity, 0.0, &rangeOfA, "beyond everything"},
    {-infinity, 0.0, &rangeOfA, "below everything"},
    {0.0, std::nextafter(-180.0, -181.0), &rangeOfB, "the first number beyond"},
    {0.0, std::nextafter(180.0, 181.0), &rangeOfB, "the first number beyond"},
    {0.0, -195.0, &rangeOfB, "a multiple of 15, but beyond the range"},
    {0.0, 195.0, &rangeOfB, "a multiple of 15, but beyond the range"},
    {0.0, infinity, &rangeOfB, "beyond everything"},
    {0.0, -infinity, &rangeOfB, "below everything"},
    {45.0000001, 0.0, &stepOfA, "no tolerance"},
    {std::nextafter(45.0, 0.0), 0.0, &stepOfA, "the number next to a step"},
    {5e-324, 0.0, &stepOfA, "the number next to zero"},
    {7.0, 0.0, &stepOfA, "between two steps"},
    {0.0, -7.0, &stepOfB, "between two steps"},
    {0.0, std::nextafter(-180.0, 0.0), &stepOfB, "the number next to a step"},
    {0.0, -5e-324, &stepOfB, "the number next to zero"},
    {notANumber, 0.0, &stepOfA, "not a number passes both range tests and fails the step test"},
    {0.0, notANumber, &stepOfB, "not a number passes both range tests and fails the step test"},
    {-notANumber, 0.0, &stepOfA, "not a number with a negative sign"},
    {91.0, 181.0, &rangeOfA, "A's range is tested first"},
    {-1.0, notANumber, &rangeOfA, "A's range is tested first"},
    {7.0, 181.0, &rangeOfB, "B's range is tested before A's step"},
    {notANumber, -181.0, &rangeOfB, "B's range is tested before A's step"},
    {7.0, 7.0, &stepOfA, "A's step is tested before B's"},
    {notANumber, notANumber, &stepOfA, "A's step is tested before B's"},
    {105.0, 7.0, &rangeOfA, "A's range before B's step"},
};

TEST(ValidateMoveTarget, AcceptsMultiplesOf15WithinTheBoundsOnly) {
    for (const Case& c : unrounded) ExpectOutcome(RaisedBy([&] { ValidateMoveTarget(c.a, c.b); }), c);
}

TEST(ValidateMoveTarget, AcceptsEveryIndexPositionAndNoOtherDegree) {
    // More than one index step beyond each end.
    for (int a = -20; a <= 110; ++a) {
        for (int b = -200; b <= 200; b += a % 15 == 0 ? 1 : 25) {
            const bool reachable = a >= 0 && a <= 90 && b >= -180 && b <= 180 && a % 15 == 0 && b % 15 == 0;
            HRESULT code = S_OK;
            try {
                ValidateMoveTarget(a, b);
            } catch (const HRESULT thrown) {
                code = thrown;
            }
            ASSERT_EQ(code, reachable ? S_OK : QMV_E_INVALID_TARGET) << a << ", " << b;
        }
    }
}

constexpr double refusedByEveryRange = -2147483648.0;

TEST(RoundToWholeDegree, HasAResultForEveryNumber) {
    const struct {
        double angle, rounded;
        const char* why;
    } cases[] = {
        {44.5, 45.0, "halves go up"},
        {-7.5, -8.0, "halves go away from zero"},
        {0.5, 1.0, "halves go away from zero"},
        {-0.5, -1.0, "halves go away from zero"},
        {0.4, 0.0, "down to zero"},
        {-0.4, 0.0, "up to zero"},
        {44.4, 44.0, "down"},
        {-44.6, -45.0, "away"},
        {45.0, 45.0, "whole already"},
        {-180.0, -180.0, "whole already"},
        {std::nextafter(0.5, 0.0), 1.0, "the sum with a half rounds up to one, as the required formula does"},
        {std::nextafter(44.5, 0.0), 44.0, "below the half"},
        {5e-324, 0.0, "next to zero"},
        {-5e-324, 0.0, "next to zero"},
        {2147483646.4, 2147483646.0, "near the largest integer"},
        {2147483647.4, 2147483647.0, "the largest integer"},
        {2147483647.6, refusedByEveryRange, "beyond the largest integer"},
        {2147483648.0, refusedByEveryRange, "beyond the largest integer"},
        {-2147483647.6, -2147483648.0, "the smallest integer"},
        {-2147483648.4, -2147483648.0, "the smallest integer"},
        {-2147483648.9, refusedByEveryRange, "beyond the smallest integer"},
        {4294967296.0 + 45.0, refusedByEveryRange, "no wrapping round"},
        {1e300, refusedByEveryRange, "far beyond"},
        {-1e300, refusedByEveryRange, "far beyond"},
        {infinity, refusedByEveryRange, "infinite"},
        {-infinity, refusedByEveryRange, "infinite"},
        {notANumber, refusedByEveryRange, "not a number"},
        {-notANumber, refusedByEveryRange, "not a number"},
    };
    for (const auto& [angle, rounded, why] : cases)
        EXPECT_EQ(RoundToWholeDegree(angle), rounded) << why << ": " << angle;
}

TEST(RoundToWholeDegree, NeverGivesANegativeZero) {
    for (const double angle : {-0.0, 0.0, -0.4, 0.4, -5e-324}) EXPECT_FALSE(std::signbit(RoundToWholeDegree(angle)));
}

class Targets : public PreparedCalculator {};

TEST_F(Targets, AreTestedWithoutRoundingWhenAPositionIsSet) {
    const auto calculator = CreateCalculator();
    for (const Case& c : unrounded)
        ExpectOutcome(ReturnedBy([&] { return calculator->SetCurrentHeadPosition(c.a, c.b); }), c);
}

TEST_F(Targets, AreRoundedToWholeDegreesBeforeTheyAreTested) {
    const Case cases[] = {
        {45.4, 0.0, accepted, "rounds to 45"},
        {44.5, 0.0, accepted, "rounds to 45"},
        {45.0000001, 0.0, accepted, "refused as a position, rounded as a target"},
        {-0.4, 0.4, accepted, "rounds to zero"},
        {90.49, -180.4, accepted, "rounds into the range"},
        {89.5, 179.5, accepted, "rounds onto the bounds"},
        {7.4, 0.0, &stepOfA, "rounds to 7"},
        {44.4, 0.0, &stepOfA, "rounds to 44"},
        {0.0, -7.5, &stepOfB, "rounds to -8"},
        {0.0, 0.5, &stepOfB, "rounds to 1"},
        {-0.5, 0.0, &rangeOfA, "rounds to -1"},
        {90.5, 0.0, &rangeOfA, "rounds to 91"},
        {0.0, -180.5, &rangeOfB, "rounds to -181"},
        {0.0, 180.5, &rangeOfB, "rounds to 181"},
        // A target is rounded before it is tested: not-a-number becomes a number outside the range.
        {notANumber, 0.0, &rangeOfA, "not a number"},
        {0.0, notANumber, &rangeOfB, "not a number"},
        {infinity, 0.0, &rangeOfA, "infinite"},
        {0.0, -infinity, &rangeOfB, "infinite"},
        {1e300, 0.0, &rangeOfA, "beyond every integer"},
        {0.0, 1e300, &rangeOfB, "beyond every integer"},
        {2147483647.6, 0.0, &rangeOfA, "just beyond the largest integer"},
        {0.0, -2147483648.9, &rangeOfB, "just beyond the smallest integer"},
        {4294967296.0, 4294967296.0, &rangeOfA, "would wrap round to zero"},
        {4294967296.0 + 45.0, 0.0, &rangeOfA, "would wrap round to 45"},
    };
    const auto calculator = At(0.0, 0.0);
    for (const Case& c : cases) ExpectOutcome(Plan(*calculator.Get(), c.a, c.b), c);
}

} // namespace
