#include "formats/NumberText.h"
#include "tests/support/HostLocale.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

using namespace qmv40;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double smallest = std::numeric_limits<double>::denorm_min();
constexpr double largest = std::numeric_limits<double>::max();

/// Compares bits, so that zeros keep their sign.
testing::AssertionResult IsSame(double left, double right) {
    if (std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << left << " is not " << right;
}

TEST(TextToDouble, FollowsTheRulesOfTheCLocale) {
    const struct {
        const char* text;
        double value;
        const char* why;
    } cases[] = {
        {"0", 0.0, "zero"},
        {"-0", -0.0, "a zero keeps its sign"},
        {"24", 24.0, "no point needed"},
        {"-6.950000000e+00", -6.95, "as the geometry file has it"},
        {"+5", 5.0, "a plus sign is a sign"},
        {".5", 0.5, "no digit needed before the point"},
        {"5.", 5.0, "no digit needed behind the point"},
        {"1e3", 1000.0, "exponent without a sign"},
        {"1E-3", 0.001, "capital exponent mark"},
        {" \t\n\v\f\r7", 7.0, "every kind of white space is skipped"},
        {"7mm", 7.0, "conversion stops at the unit"},
        {"7 8", 7.0, "conversion stops at a blank"},
        {"1,5", 1.0, "conversion stops at a comma"},
        {"1.2.3", 1.2, "conversion stops at a second point"},
        {"1e", 1.0, "an exponent mark without digits is ignored"},
        {"1e+", 1.0, "an exponent mark with a sign alone is ignored"},
        {"1e 5", 1.0, "an exponent mark with a blank is ignored"},
        {"1.5e2x", 150.0, "stops behind the exponent"},
        {"1d5", 1.0, "no other exponent mark"},
        {"0x", 0.0, "a prefix alone is the zero in front of it"},
        {"0xg", 0.0, "a prefix without a digit is the zero in front of it"},
        {"0x.", 0.0, "a prefix with a point alone is the zero in front of it"},
        {"0x10", 16.0, "hexadecimal"},
        {"0X1.8P+1", 3.0, "capitals, point and binary exponent"},
        {"-0x.8", -0.5, "no digit before the point"},
        {"0x1p", 1.0, "binary exponent mark without digits"},
        {"0x1p-1074", smallest, "the smallest double"},
        {"0x1.8p-1075", smallest, "three quarters of the smallest double"},
        {"0x1p-1075", 0.0, "a tie goes to even"},
        {"0x1p1024", infinity, "too large"},
        {"-0x1p-9999", -0.0, "too small"},
        {"0x0p9999", 0.0, "zero at any exponent"},
        {"inf", infinity, "an infinity by name"},
        {"-INFINITY", -infinity, "in any letter case"},
        {"infinite", infinity, "the rest of the word is ignored"},
        {"in", 0.0, "no number"},
        {"i", 0.0, "no number"},
        {"", 0.0, "nothing at all"},
        {"   ", 0.0, "nothing but blanks"},
        {"abc", 0.0, "a word"},
        {"-", 0.0, "a sign alone"},
        {"+-5", 0.0, "two signs"},
        {"--5", 0.0, "two signs"},
        {"- 5", 0.0, "a blank behind the sign"},
        {".", 0.0, "a point alone"},
        {".e5", 0.0, "a point and an exponent"},
        {"-.", 0.0, "a sign and a point: the sign is ignored"},
        {"e5", 0.0, "an exponent alone"},
        {"999999999", 999999999.0, "the number that marks a missing value"},
        {"1e400", infinity, "too large"},
        {"-1e400", -infinity, "too large, negative"},
        {"1e-400", 0.0, "too small"},
        {"-1e-400", -0.0, "too small, negative"},
        {"0e999999999999999999999", 0.0, "zero at any exponent"},
        {"1e999999999999999999999", infinity, "an exponent beyond every integer"},
        {"1e-999999999999999999999", 0.0, "an exponent below every integer"},
        {"1.7976931348623157e308", largest, "the largest"},
        {"1.7976931348623158e308", largest, "rounds down to the largest"},
        {"1.7976931348623159e308", infinity, "rounds up beyond it"},
        {"4.9406564584124654e-324", smallest, "the smallest"},
        {"2.4703282292062328e-324", smallest, "just above half of it"},
        {"2.4703282292062327e-324", 0.0, "just below half of it"},
        {"2.2250738585072011e-308", 0x0.fffffffffffffp-1022, "the largest that is not normal"},
        {"9007199254740993", 9007199254740992.0, "a tie goes to even"},
        {"9007199254740993.00000000000000000000000000000001", 9007199254740994.0, "the least excess breaks the tie"},
        {"0.1", 0x1.999999999999ap-4, "nearest to a tenth"},
        {"1e23", 0x1.52d02c7e14af6p+76, "nearest, though its neighbour is as short"},
    };
    for (const auto& [text, value, why] : cases)
        EXPECT_TRUE(IsSame(TextToDouble(text), value)) << '"' << text << "\": " << why;
}

TEST(TextToDouble, UnderstandsNotANumber) {
    for (const char* const text : {"nan", "NaN", "-nan", "nan(123)", "nan(", "nanx"})
        EXPECT_TRUE(std::isnan(TextToDouble(text))) << text;
    EXPECT_TRUE(IsSame(TextToDouble("na"), 0.0));
}

TEST(TextToDouble, BalancesManyDigitsWithTheExponent) {
    const std::string thousand(1000, '0');
    EXPECT_TRUE(IsSame(TextToDouble(("1" + thousand + "e-1000").c_str()), 1.0));
    EXPECT_TRUE(IsSame(TextToDouble(("0." + thousand + "1e1001").c_str()), 1.0));
    EXPECT_TRUE(IsSame(TextToDouble(("1" + thousand).c_str()), infinity));
    EXPECT_TRUE(IsSame(TextToDouble(("-0." + thousand + "1").c_str()), -0.0));
    EXPECT_TRUE(IsSame(TextToDouble(("0." + thousand + "1e1400").c_str()), infinity));
    EXPECT_TRUE(IsSame(TextToDouble(("1" + thousand + "e-1400").c_str()), 0.0));
    EXPECT_TRUE(IsSame(TextToDouble(("0x1" + thousand).c_str()), infinity));
    EXPECT_TRUE(IsSame(TextToDouble(("0x0." + thousand + "1p4004").c_str()), 1.0));
}

TEST(DoubleToScientific, WritesNineDecimalsAndAtLeastTwoExponentDigits) {
    const struct {
        double value;
        const char* text;
        const char* why;
    } cases[] = {
        {-6.95, "-6.950000000e+00", "an offset"},
        {0.0, "0.000000000e+00", "zero"},
        {-0.0, "-0.000000000e+00", "a zero keeps its sign"},
        {1e5, "1.000000000e+05", "two exponent digits"},
        {1e-5, "1.000000000e-05", "two exponent digits, negative"},
        {1e100, "1.000000000e+100", "three exponent digits"},
        {largest, "1.797693135e+308", "the largest"},
        {smallest, "4.940656458e-324", "the smallest"},
        {-312.5, "-3.125000000e+02", "no rounding"},
        {1.0 / 3.0, "3.333333333e-01", "rounded down"},
        {2.0 / 3.0, "6.666666667e-01", "rounded up"},
        {9.9999999999, "1.000000000e+01", "rounded up into the exponent"},
        {1.0000000005, "1.000000001e+00", "the double lies above the tie"},
        {0x1.000000000p+0 + 0x1p-31, "1.000000000e+00", "4.66e-10 rounds down"},
        {16777216.5, "1.677721650e+07", "exact"},
        {4503599627370.5, "4.503599627e+12", "exactly at 4.503599627|3705"},
        {1.25e9 + 0.5, "1.250000000e+09", "a true tie goes to even"},
        {1.250000001e9 + 0.5, "1.250000002e+09", "a true tie goes to even, upwards"},
        {infinity, "inf", "an infinity"},
        {-infinity, "-inf", "the other"},
        {std::numeric_limits<double>::quiet_NaN(), "nan", "not a number"},
    };
    for (const auto& [value, text, why] : cases) EXPECT_STREQ(DoubleToScientific(value).data(), text) << why;
}

TEST(DoubleToScientific, IsReadBackToTenDigitsAndThenToTheSameText) {
    constexpr double halfOfTheTenthDigit = 0.5e-9 * (1 + 1e-6); // in units of the leading digit, with room for rounding
    constexpr std::uint64_t seed = 20240519;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isnormal(value)) continue;
        const ScientificText text = DoubleToScientific(value);
        const double back = TextToDouble(text.data());
        const double leadingPlace = std::pow(10.0, std::floor(std::log10(std::abs(value))));
        if (!std::isfinite(back)) continue; // rounded up beyond the largest
        EXPECT_LE(std::abs(back - value) / leadingPlace, halfOfTheTenthDigit) << text.data();
        EXPECT_STREQ(DoubleToScientific(back).data(), text.data());
    }
}

TEST(NumberText, KeepsTheDecimalPointInAHostWithADecimalComma) {
    for (const auto language : HostLocale::all) {
        const HostLocale host(language);
        SCOPED_TRACE(host.Name());
        EXPECT_EQ(TextToDouble("1.5"), 1.5);
        EXPECT_EQ(TextToDouble("1,5"), 1.0);
        EXPECT_EQ(TextToDouble("INFINITY"), infinity) << "the letter I differs in Turkish locales";
        EXPECT_STREQ(DoubleToScientific(1.5).data(), "1.500000000e+00");
    }
}

} // namespace
