#include "cli/ComponentError.h"
#include "cli/HeadAngles.h"
#include "cli/Json.h"
#include "cli/Moves.h"
#include "cli/Numbers.h"
#include "interface/ErrorCodes.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sstream>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Doubles of every size, drawn by their bits.
double AnyFiniteDouble(std::mt19937_64& generator) {
    while (true) {
        const double value = std::bit_cast<double>(generator());
        if (std::isfinite(value)) return value;
    }
}

TEST(Numbers, ForPeopleHaveTheDecimalsAskedForAndNoNegativeZero) {
    const struct {
        double value;
        int decimals;
        const char* text;
        const char* why;
    } cases[] = {
        {1.25, 4, "1.2500", "padded"},
        {-1234567.5, 2, "-1234567.50", "no grouping of digits"},
        {-0.00001, 4, "0.0000", "rounds to zero: a sign would puzzle"},
        {-0.0, 4, "0.0000", "the zero itself"},
        {-0.00006, 4, "-0.0001", "rounds away from zero: the sign stays"},
        {0.5, 0, "0", "to even, and no decimal mark"},
        {-10.0, 0, "-10", "zeros among the digits are no zero"},
        {notANumber, 4, "nan", "shown, not hidden"},
    };
    for (const auto& each : cases) EXPECT_EQ(each.text, FixedText(each.value, each.decimals)) << each.why;
}

TEST(Numbers, ExactTextReadsBackToTheSameBits) {
    std::mt19937_64 generator(20240607);
    for (int i = 0; i < 20000; ++i) {
        const double value = AnyFiniteDouble(generator);
        const std::string text = ExactText(value);
        const ParsedNumber parsed = ParseNumber(text);
        ASSERT_EQ(nullptr, parsed.problem) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(parsed.value)) << text;
    }
    EXPECT_EQ("-0", ExactText(-0.0));
}

TEST(Numbers, ReadTheWholeTextOrSayWhatIsWrong) {
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
        const ParsedNumber parsed = ParseNumber(each.text);
        EXPECT_STREQ(each.problem, parsed.problem) << each.text;
        if (each.problem != nullptr) continue;
        EXPECT_EQ(each.value, parsed.value) << each.text;
    }
}

TEST(HeadAnglesText, IsTwoNumbersWithACommaBetween) {
    const struct {
        const char* text;
        double a;
        double b;
    } good[] = {{"0,0", 0, 0}, {"45,-90", 45, -90}, {" 7.5 , 1e1 ", 7.5, 10}, {"-15,+30", -15, 30}};
    for (const auto& each : good) {
        const auto angles = ParseHeadAngles(each.text);
        ASSERT_TRUE(angles.has_value()) << each.text;
        EXPECT_EQ(each.a, angles->a) << each.text;
        EXPECT_EQ(each.b, angles->b) << each.text;
    }
    for (const char* bad : {"", "45", "45,", ",90", "45;90", "45,90,0", "a,b", "45 90", "nan,0", "0,inf"}) {
        EXPECT_FALSE(ParseHeadAngles(bad).has_value()) << bad;
    }
}

TEST(JsonDocuments, KeepEveryBitOfADoubleAndTheSignOfZero) {
    std::mt19937_64 generator(15);
    for (int i = 0; i < 20000; ++i) {
        const double value = AnyFiniteDouble(generator);
        const double back = Json::parse(Json(value).dump()).get<double>();
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(back)) << i;
    }
    EXPECT_TRUE(std::signbit(Json::parse(Json(-0.0).dump()).get<double>()));
}

TEST(JsonDocuments, ShowWhatIsNotAFiniteNumberAsNull) {
    RequiredMoves moves{};
    moves.RotateToPeg.RotationAngle = notANumber;
    moves.ApproachPeg.YPosition = -infinity;
    std::ostringstream out;
    PrintJson(MovesJson(moves), out);
    const Json document = Json::parse(out.str());
    EXPECT_TRUE(document["RotateToPeg"]["RotationAngle"].is_null());
    EXPECT_TRUE(document["ApproachPeg"]["YPosition"].is_null());
    EXPECT_EQ(0.0, document["ApproachPeg"]["XPosition"].get<double>());
}

TEST(MovesList, HoldsEveryFieldOfTheRecordOnceInTheOrderOfTheRecord) {
    RequiredMoves moves{};
    const char* const begin = reinterpret_cast<const char*>(&moves);
    std::ptrdiff_t expected = 0;
    for (const Move& move : AllMoves()) {
        std::visit(ForKind{[&](XYZData RequiredMoves::*field) {
                               EXPECT_EQ(expected, reinterpret_cast<const char*>(&(moves.*field)) - begin) << move.name;
                               expected += 24;
                           },
                           [&](ArcData RequiredMoves::*field) {
                               EXPECT_EQ(expected, reinterpret_cast<const char*>(&(moves.*field)) - begin) << move.name;
                               expected += 56;
                           }},
                   move.field);
    }
    EXPECT_EQ(680, expected);
}

TEST(TurnInWords, SaysWhichWayAsSeenFromTheTipOfTheRotationVector) {
    const struct {
        ArcData arc;
        const char* words;
        const char* why;
    } cases[] = {
        {{0, 0, 0, 0, 0, 1, 90}, "turn 90.0000 deg clockwise, seen from above", "a positive angle is clockwise"},
        {{0, 0, 0, 0, 0, 1, -90}, "turn 90.0000 deg counter-clockwise, seen from above", "a negative one is not"},
        {{0, 0, 0, 0, 0, -1, 15}, "turn 15.0000 deg clockwise, seen from below", "the tip is below"},
        {{0, 0, 0, -1, 0, 0, -135},
         "turn 135.0000 deg counter-clockwise, seen from the tip of (-1.000000, 0.000000, 0.000000)",
         "a level axis has no above"},
        {{0, 0, 0, 0, 0, 1, -0.0}, "no turn: 0 deg", "nothing turns, so there is no sense"},
        {{0, 0, 0, 0, 0, 1, notANumber}, "the angle is not a number: do not run this move", "never a guess"},
    };
    for (const auto& each : cases) EXPECT_EQ(each.words, TurnInWords(each.arc)) << each.why;
}

TEST(ErrorCodes, AreWrittenAsEightHexadecimalDigits) {
    EXPECT_EQ("0x8A00000E", CodeText(QMV_E_INVALID_TARGET));
    EXPECT_EQ("0x80004003", CodeText(E_POINTER));
    EXPECT_EQ("0x00000000", CodeText(S_OK));
}

} // namespace
