#include "tools/plans/Moves.h"
#include "tools/plans/HeadAnglesText.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <limits>

using namespace qmv40;

namespace {

constexpr double noAngle = std::numeric_limits<double>::quiet_NaN();

TEST(HeadAnglesText, IsTwoNumbersWithACommaBetween) {
    const struct {
        const char* text;
        double a;
        double b;
    } good[] = {{"0,0", 0, 0}, {"45,-90", 45, -90}, {" 7.5 , 1e1 ", 7.5, 10}, {"-15,+30", -15, 30}};
    for (const auto& each : good) {
        const auto angles = plans::ParseHeadAngles(each.text);
        ASSERT_TRUE(angles.has_value()) << each.text;
        EXPECT_EQ(each.a, angles->a) << each.text;
        EXPECT_EQ(each.b, angles->b) << each.text;
    }
    for (const char* bad : {"", "45", "45,", ",90", "45;90", "45,90,0", "a,b", "45 90", "nan,0", "0,inf"}) {
        EXPECT_FALSE(plans::ParseHeadAngles(bad).has_value()) << bad;
    }
}

TEST(MovesList, HoldsEveryFieldOfTheRecordOnceInTheOrderOfTheRecord) {
    RequiredMoves moves{};
    const char* const begin = reinterpret_cast<const char*>(&moves);
    std::ptrdiff_t expected = 0;
    for (const plans::Move& move : plans::AllMoves()) {
        std::visit(plans::ForKind{[&](XYZData RequiredMoves::*field) {
                                      EXPECT_EQ(expected, reinterpret_cast<const char*>(&(moves.*field)) - begin)
                                          << move.name;
                                      expected += 24;
                                  },
                                  [&](ArcData RequiredMoves::*field) {
                                      EXPECT_EQ(expected, reinterpret_cast<const char*>(&(moves.*field)) - begin)
                                          << move.name;
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
        {{0, 0, 0, 0, 0, 1, noAngle}, "the angle is not a number: do not run this move", "never a guess"},
    };
    for (const auto& each : cases) EXPECT_EQ(each.words, plans::TurnInWords(each.arc)) << each.why;
}

} // namespace
