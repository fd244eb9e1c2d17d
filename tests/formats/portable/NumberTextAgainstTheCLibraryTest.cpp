#include "formats/NumberText.h"
#include "tests/support/Trials.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

using namespace qmv40;

/// Compares with the C library's conversions, which are correctly rounded on this system. These tests run in the C
/// locale.

namespace {

constexpr std::uint64_t seed = 71239;

testing::AssertionResult IsReadAsTheLibraryDoes(const std::string& text) {
    const double ours = TextToDouble(text.c_str());
    const double theirs = std::strtod(text.c_str(), nullptr);
    const bool isSame = std::bit_cast<std::uint64_t>(ours) == std::bit_cast<std::uint64_t>(theirs);
    if (isSame || (std::isnan(ours) && std::isnan(theirs))) return testing::AssertionSuccess();
    return testing::AssertionFailure() << '"' << text << "\" is read as " << ours << ", not as " << theirs;
}

using Printed = std::array<char, 64>;

Printed General(double value, int digits) {
    Printed text;
    std::snprintf(text.data(), text.size(), "%.*g", digits, value);
    return text;
}

Printed Scientific(double value, int decimals) {
    Printed text;
    std::snprintf(text.data(), text.size(), "%.*e", decimals, value);
    return text;
}

Printed Hexadecimal(double value, int decimals) {
    Printed text;
    std::snprintf(text.data(), text.size(), "%.*a", decimals, value);
    return text;
}

TEST(TextToDouble, AgreesWithStrtodOnEveryShapeOfText) {
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    const std::string pieces[] = {"0", "1", "7",  "9",   "00",  "5",    ".",   ".",    "e",   "E",
                                  "+", "-", "0x", "a",   "F",   "p",    "P",   "inf",  "nan", "(",
                                  ")", " ", "\t", "308", "324", "1074", "e-3", "p-10", ",",   "i"};
    for (int i = 0; i < Trials(300000); ++i) {
        std::string text;
        for (std::uint64_t length = random() % 9; length > 0; --length) text += pieces[random() % std::size(pieces)];
        ASSERT_TRUE(IsReadAsTheLibraryDoes(text));
    }
}

TEST(TextToDouble, AgreesWithStrtodOnNumbersInAllNotations) {
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (int i = 0; i < Trials(40000); ++i) {
        const double value = std::bit_cast<double>(random());
        for (const Printed& text : {General(value, 6), General(value, 17), Scientific(value, 9), Scientific(value, 16),
                                    Scientific(value, 20), Hexadecimal(value, 3), Hexadecimal(value, 13)})
            ASSERT_TRUE(IsReadAsTheLibraryDoes(text.data()));
    }
}

TEST(TextToDouble, AgreesWithStrtodAroundBothEndsOfTheRange) {
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (int i = 0; i < Trials(100000); ++i) {
        const std::string digits = std::to_string(random());
        const std::string point = random() % 2 == 0 ? "." : "";
        const int large = 280 + static_cast<int>(random() % 40), small = -300 - static_cast<int>(random() % 60);
        ASSERT_TRUE(
            IsReadAsTheLibraryDoes(digits.substr(0, 1) + point + digits.substr(1) + "e" + std::to_string(large)));
        ASSERT_TRUE(
            IsReadAsTheLibraryDoes("-" + digits.substr(0, 1) + point + digits.substr(1) + "e" + std::to_string(small)));
        ASSERT_TRUE(IsReadAsTheLibraryDoes("0x" + digits.substr(0, 1) + point + digits.substr(1) + "p" +
                                           std::to_string(small * 3 - 90)));
        ASSERT_TRUE(IsReadAsTheLibraryDoes("0x" + digits.substr(0, 1) + point + digits.substr(1) + "p" +
                                           std::to_string(large * 3)));
    }
}

TEST(DoubleToScientific, AgreesWithPrintfOnEveryNumber) {
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> coordinate(-2000.0, 2000.0);
    // Sixteenths: many of them are exactly half-way between two texts of ten digits.
    for (int i = 0; i < Trials(200000); ++i) {
        for (const double value :
             {std::bit_cast<double>(random()), coordinate(random), std::round(coordinate(random) * 1e7) / 16})
            ASSERT_STREQ(DoubleToScientific(value).data(), Scientific(value, 9).data());
    }
}

} // namespace
