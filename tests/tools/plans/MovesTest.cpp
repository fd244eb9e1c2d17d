#include "tools/plans/Moves.h"
#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/TurnInWords.h"

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

TEST(MovesList, HasEachFieldOfTheRecordOnceAndInOrder) {
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

TEST(MovesList, FindsMovesByIdAndByName) {
    std::size_t index = 0;
    for (const plans::Move& move : plans::AllMoves()) {
        EXPECT_EQ(index++, plans::IndexOf(move.id)) << move.name;
        EXPECT_EQ(&move, plans::FindMove(move.name));
    }
    EXPECT_EQ(plans::moveCount, index);
    EXPECT_EQ(nullptr, plans::FindMove("Unlock"));
}

TEST(TurnInWords, SaysWhichWayTheMachineMoves) {
    const model::Vector3 before{0.0, -17.0, 0.0};
    const struct {
        ArcData arc;
        std::optional<model::Vector3> start;
        const char* words;
        const char* why;
    } cases[] = {
        {{0, 0, 0, 0, 0, 1, 90},
         before,
         "turn 90.0000 deg clockwise, seen from above",
         "a positive angle is clockwise"},
        {{0, 0, 0, 0, 0, 1, -90},
         before,
         "turn 90.0000 deg counter-clockwise, seen from above",
         "a negative angle is counter-clockwise"},
        {{0, 0, 0, 0, 0, -1, 15},
         before,
         "turn 15.0000 deg counter-clockwise, seen from above",
         "the axis points down"},
        {{0, 0, 0, -1, 0, 0, -135}, before, "turn 135.0000 deg up and over, towards +Y", "over the top of the circle"},
        {{0, 0, 0, -1, 0, 0, 135}, before, "turn 135.0000 deg down and under, towards +Y", "under its lowest point"},
        {{0, 0, 0, -1, 0, 0, -45},
         before,
         "turn 45.0000 deg upwards, towards +Y",
         "it ends before the top of the circle"},
        {{0, 0, 0, -1, 0, 0, 45}, before, "turn 45.0000 deg downwards, towards +Y", "it ends before the lowest point"},
        {{0, 0, 0, -1, 0, 0, -135},
         model::Vector3{0.0, 17.0, 0.0},
         "turn 135.0000 deg down and under, towards -Y",
         "the same arc from the other side"},
        {{0, 0, 0, -0.8, -0.6, 0, -135},
         model::Vector3{6.0, -8.0, 0.0},
         "turn 135.0000 deg up and over, towards -X and +Y",
         "a head that is mounted turned"},
        {{0, 0, 0, -1, 0, 0, -360},
         before,
         "turn 360.0000 deg up and over",
         "a full turn ends where it starts, so it has no direction"},
        {{0, 0, 0, -1, 0, 0, -135},
         std::nullopt,
         "turn 135.0000 deg counter-clockwise, seen from the tip of (-1.000000, 0.000000, 0.000000)",
         "the start is not known"},
        {{0, 0, 0, 0.6, 0, 0.8, 10},
         before,
         "turn 10.0000 deg clockwise, seen from the tip of (0.600000, 0.000000, 0.800000)",
         "the axis is neither horizontal nor vertical"},
        {{0, 0, 0, 0, 0, 1, -0.0}, before, "no turn: 0 deg", "no turn, so no direction"},
        {{0, 0, 0, 0, 0, 1, noAngle},
         before,
         "the angle is not a number: do not run this move",
         "an angle that is NaN"},
    };
    for (const auto& each : cases) EXPECT_EQ(each.words, plans::TurnInWords(each.arc, each.start)) << each.why;
}

} // namespace
