#include "tools/text/Numbers.h"
#include "interface/ErrorCodes.h"
#include "tests/support/AnyDouble.h"
#include "tools/component/ComponentError.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace qmv40;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(Numbers, FixedTextHasTheDecimalsAndNoNegativeZero) {
    const struct {
        double value;
        int decimals;
        const char* text;
        const char* why;
    } cases[] = {
        {1.25, 4, "1.2500", "padded"},
        {-1234567.5, 2, "-1234567.50", "no grouping of digits"},
        {-0.00001, 4, "0.0000", "rounds to zero, which has no sign"},
        {-0.0, 4, "0.0000", "negative zero"},
        {-0.00006, 4, "-0.0001", "does not round to zero: the sign stays"},
        {0.5, 0, "0", "rounds to the even neighbour, and has no decimal mark"},
        {-10.0, 0, "-10", "a number with zeros among its digits"},
        {notANumber, 4, "nan", "not a number"},
    };
    for (const auto& each : cases) EXPECT_EQ(each.text, text::FixedText(each.value, each.decimals)) << each.why;
}

TEST(Numbers, ExactTextReadsBackToTheSameBits) {
    std::mt19937_64 generator(20240607);
    for (int i = 0; i < 20000; ++i) {
        const double value = AnyFiniteDouble(generator);
        const std::string text = text::ExactText(value);
        const text::ParsedNumber parsed = text::ParseNumber(text);
        ASSERT_EQ(nullptr, parsed.problem) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(parsed.value)) << text;
    }
    EXPECT_EQ("-0", text::ExactText(-0.0));
}

TEST(Numbers, ParseNumberReadsTheWholeTextOrNamesTheProblem) {
    const struct {
        const char* text;
        double value;
        const char* problem;
    } cases[] = {
        {"45", 45.0, nullptr},
        {"-0.5", -0.5, nullptr},
        {"+90", 90.0, nullptr},
        {"1e-3", 0.001, nullptr},
        {".5", 0.5, nullptr},
        {"", 0.0, "is empty"},
        {"+", 0.0, "is not a number"},
        {"+-1", 0.0, "is not a number"},
        {"abc", 0.0, "is not a number"},
        {" 1", 0.0, "is not a number"},
        {"1,5", 0.0, "goes on after the number"},
        {"7mm", 0.0, "goes on after the number"},
        {"0x10", 0.0, "goes on after the number"},
        {"1e999", 0.0, "is too large or too small a number"},
        {"inf", 0.0, "is not a finite number"},
        {"nan", 0.0, "is not a finite number"},
    };
    for (const auto& each : cases) {
        const text::ParsedNumber parsed = text::ParseNumber(each.text);
        EXPECT_STREQ(each.problem, parsed.problem) << each.text;
        if (each.problem != nullptr) continue;
        EXPECT_EQ(each.value, parsed.value) << each.text;
    }
}

TEST(ErrorCodes, AreWrittenAsEightHexadecimalDigits) {
    EXPECT_EQ("0x8A00000E", component::CodeText(QMV_E_INVALID_TARGET));
    EXPECT_EQ("0x80004003", component::CodeText(E_POINTER));
    EXPECT_EQ("0x00000000", component::CodeText(S_OK));
}

} // namespace
