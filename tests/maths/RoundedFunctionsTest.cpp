// The elementary functions of the Windows build. They are compiled into this program, so that they are tested on every
// platform.

#include "maths/ElementaryFunctions.h"
#include "tests/support/Trials.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <random>

namespace {

using namespace qmv40;

struct Value {
    double argument;
    double nearest; ///< the double nearest to the function's value, computed with 300 bits (mpmath)
    const char* why;
};

/// From 60,000 random arguments, those were taken whose values are nearest to the middle between two doubles: within
/// 1e-7 to 5e-4 of a step. A computation with 53 bits, and mostly one with 64 bits, finds the nearest double only by
/// chance.
constexpr const char* midway = "midway between two doubles";
/// The double nearest to a multiple of a quarter turn. The function's value is the rounding error of that double, so it
/// depends on the digits of pi beyond it.
constexpr const char* multiple = "next to a multiple of a quarter turn";

constexpr Value sines[] = {
    {-0x1.b415111fe18fp-5, -0x1.b3e05982f430fp-5, midway},
    {-0x1.91465d5b6bf08p-1, -0x1.697016727cf7ep-1, midway},
    {-0x1.34a6361fe697dp-1, -0x1.224abaf61488bp-1, midway},
    {0x1.9ad7e94533578p-3, 0x1.9817e4a01b936p-3, midway},
    {0x1.883e109bd77b6p-1, 0x1.62fc05d898d85p-1, midway},
    {0x1.9ad6b671d2634p-3, 0x1.9816b7f3eae74p-3, midway},
    {0x1.ba456a7f1a3ccp+0, 0x1.f9b77ecb614a2p-1, midway},
    {-0x1.8cf743f1cd485p+2, 0x1.49c0e0306de83p-4, midway},
    {-0x1.8cf45585d3299p+2, 0x1.4a7bdef263b16p-4, midway},
    {0x1.2e4d104b363bfp+2, -0x1.fff7fa0f4ed25p-1, midway},
    {0x1.937cafac1a7aap+1, -0x1.5cf8b781bc39p-7, midway},
    {-0x1.ad50f94351bap+0, -0x1.fd1d4416e7249p-1, midway},
    {0x1.921fb54442d18p+0, 0x1p+0, multiple},
    {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53, multiple},
    {0x1.2d97c7f3321d2p+2, -0x1p+0, multiple},
    {0x1.921fb54442d18p+2, -0x1.1a62633145c07p-52, multiple},
    {0x1.2d97c7f3321d2p+3, 0x1.a79394c9e8a0ap-52, multiple},
    {0x1.3a28c59d5433bp+7, 0x1.1b19140c0c0d5p-50, multiple},
    {0x1.3d4d0507dcb95p+7, 0x1p+0, multiple},
    {0x1.fed0cb511029p+18, -0x1.40bb079276967p-35, multiple},
};

constexpr Value cosines[] = {
    {0x1.bca0060b7839p-4, 0x1.fcfc8692b76ebp-1, midway},
    {0x1.648313ecf3bd4p-1, 0x1.88d013dd1d6a7p-1, midway},
    {0x1.744a685a0b9eep-1, 0x1.7e81f0f9fcd3p-1, midway},
    {-0x1.1688decc8f4bep-2, 0x1.ed2cf9c196ddcp-1, midway},
    {-0x1.1abc34d6ead14p+1, -0x1.30f8ca244d326p-1, midway},
    {-0x1.59644a2ef0735p+2, 0x1.43ac74729e2cdp-1, midway},
    {-0x1.3ced5097e05c9p+1, -0x1.92b62e1636597p-1, midway},
    {0x1.7d6c5f5ad1496p+1, -0x1.f951af51b21dap-1, midway},
    {-0x1.799c03a57bf4dp+2, 0x1.dae5ac2ede056p-1, midway},
    {0x1.1d6e3e9d8acp+0, 0x1.c2c67d5ad34b6p-2, midway},
    {0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54, multiple},
    {0x1.921fb54442d18p+1, -0x1p+0, multiple},
    {0x1.2d97c7f3321d2p+2, -0x1.a79394c9e8a0ap-53, multiple},
    {0x1.921fb54442d18p+2, 0x1p+0, multiple},
    {0x1.2d97c7f3321d2p+3, -0x1p+0, multiple},
    {0x1.3a28c59d5433bp+7, 0x1p+0, multiple},
    {0x1.3d4d0507dcb95p+7, 0x1.3da34489c213bp-48, multiple},
    {0x1.fed0cb511029p+18, 0x1p+0, multiple},
};

constexpr Value arcTangents[] = {
    {0x1.0194e732c7dbfp-2, 0x1.f8b14437dc348p-3, midway},   {0x1.059a439da9186p-1, 0x1.e3b333ecd00ccp-2, midway},
    {0x1.0af65b48d7102p-1, 0x1.ec2a0d7bcefe4p-2, midway},   {-0x1.22211f0104c36p-4, -0x1.21a5475b0025p-4, midway},
    {-0x1.04855bea1c854p-1, -0x1.e1fbaa573af64p-2, midway}, {-0x1.1456f365bd10cp-1, -0x1.facc929704ad5p-2, midway},
    {-0x1.5b70ce6f9737cp-4, -0x1.5a9c65ecd4e2p-4, midway},  {0x1.05f20b7c71c87p-1, 0x1.e43e61d758a33p-2, midway},
    {-0x1.0252b2805dfa2p-5, -0x1.023cca7c6dcep-5, midway},  {0x1.6b03ec23cdacfp-4, 0x1.6a11bebbb408p-4, midway},
};

/// Random arguments for the laws below.
constexpr int samples = Trials(100000);
constexpr std::uint64_t seed = 40;

/// Long doubles have 11 bits more than doubles: the error of the C library's functions for them is below 1/1000 of a
/// step.
constexpr double largestError = 0.501;

/// The distance of `rounded` from `exact`, in steps between neighbouring doubles.
double Error(double rounded, long double exact) {
    const double next = std::nextafter(std::fabs(rounded), std::numeric_limits<double>::infinity());
    const long double off = static_cast<long double>(rounded) - exact;
    return static_cast<double>(std::fabs(off) / static_cast<long double>(next - std::fabs(rounded)));
}

} // namespace

TEST(RoundedFunctions, GiveTheNearestDoubleInHardCases) {
    for (const Value& value : sines) EXPECT_EQ(Sine(value.argument), value.nearest) << value.argument << value.why;
    for (const Value& value : cosines) EXPECT_EQ(Cosine(value.argument), value.nearest) << value.argument << value.why;
    for (const Value& value : arcTangents)
        EXPECT_EQ(ArcTangent(value.argument), value.nearest) << value.argument << value.why;
}

TEST(RoundedFunctions, AreWithinHalfAStepOfLongDoubles) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> angle(-std::numbers::pi / 4.0, std::numbers::pi / 4.0);
    std::uniform_real_distribution<double> coordinate(-700.0, 700.0);
    for (int i = 0; i < samples; ++i) {
        const double turn = angle(random), x = coordinate(random), y = coordinate(random);
        ASSERT_LE(Error(Sine(turn), std::sin(static_cast<long double>(turn))), largestError)
            << turn << " seed " << seed;
        ASSERT_LE(Error(Cosine(turn), std::cos(static_cast<long double>(turn))), largestError)
            << turn << " seed " << seed;
        const long double wideX = x, wideY = y;
        ASSERT_LE(Error(ArcTangent(y, x), std::atan2(wideY, wideX)), largestError)
            << y << ", " << x << " seed " << seed;
        ASSERT_LE(Error(ArcTangent(x), std::atan(wideX)), largestError) << x << " seed " << seed;
    }
}

TEST(RoundedFunctions, KeepTheSignsOfTheirSymmetries) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> angle(0.0, 400000.0);
    for (int i = 0; i < samples; ++i) {
        const double turn = angle(random);
        ASSERT_EQ(Sine(-turn), -Sine(turn)) << turn;
        ASSERT_EQ(Cosine(-turn), Cosine(turn)) << turn;
        ASSERT_EQ(ArcTangent(-turn), -ArcTangent(turn)) << turn;
    }
    EXPECT_TRUE(std::signbit(Sine(-0.0)) && std::signbit(ArcTangent(-0.0)));
}

TEST(RoundedFunctions, HaveResultsForAllArguments) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double quarter = std::numbers::pi / 2.0;
    for (const double nothing : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_TRUE(std::isnan(Sine(nothing))) << nothing;
        EXPECT_TRUE(std::isnan(Cosine(nothing))) << nothing;
    }
    EXPECT_TRUE(std::isnan(ArcTangent(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_EQ(ArcTangent(infinity), quarter);
    EXPECT_EQ(ArcTangent(-infinity), -quarter);
    for (const double large : {1e200, std::numeric_limits<double>::max()}) EXPECT_EQ(ArcTangent(large), quarter);
    for (const double small :
         {1e-9, 1e-160, std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min()}) {
        EXPECT_EQ(Sine(small), small);
        EXPECT_EQ(ArcTangent(small), small);
        EXPECT_EQ(Cosine(small), 1.0);
    }
    EXPECT_EQ(ArcTangent(0.0, -1.0), std::numbers::pi);
    EXPECT_EQ(ArcTangent(3.0, 0.0), quarter);
    EXPECT_LE(std::fabs(Sine(1e15)), 1.0); // computed by the C library
}
