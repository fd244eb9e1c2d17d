#include "tools/text/Json.h"
#include "tests/support/AnyDouble.h"
#include "tools/plans/MovesJson.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

using namespace qmv40;

namespace {

using Reader = nlohmann::ordered_json;

/// The same value for the tool and for the library that reads it.
struct Twins {
    text::Json written;
    Reader read;
};

Twins RandomValue(std::mt19937_64& random, int depth) { // NOLINT(misc-no-recursion): values contain values
    static const char* const texts[] = {"", "a \"b\"\\\n\x01", "Prüfkopf 検査", "</script>"};
    switch (random() % (depth == 0 ? 5 : 7)) {
    case 0:
        return {nullptr, nullptr};
    case 1: {
        const bool flag = random() % 2 == 0;
        return {flag, flag};
    }
    case 2: {
        const double number = AnyFiniteDouble(random);
        return {number, number};
    }
    case 3: {
        const auto number = static_cast<std::int64_t>(random());
        return {number, number};
    }
    case 4: {
        const char* const text = texts[random() % std::size(texts)];
        return {text, text};
    }
    case 5: {
        Twins array{text::Json::Array(), Reader::array()};
        for (std::uint64_t i = random() % 4; i > 0; --i) {
            const Twins element = RandomValue(random, depth - 1);
            array.written.PushBack(element.written);
            array.read.push_back(element.read);
        }
        return array;
    }
    default: {
        Twins object{text::Json::Object(), Reader::object()};
        for (std::uint64_t i = random() % 4; i > 0; --i) {
            const std::string name = std::string(1, static_cast<char>('a' + random() % 6)) + "\"";
            const Twins member = RandomValue(random, depth - 1);
            object.written[name] = member.written;
            object.read[name] = member.read;
        }
        return object;
    }
    }
}

TEST(Json, IsWrittenAsTheLibraryWritesIt) {
    constexpr unsigned seed = 20261122;
    std::mt19937_64 random(seed);
    for (int i = 0; i < 3000; ++i) {
        const Twins value = RandomValue(random, 4);
        ASSERT_EQ(value.read.dump(), value.written.Dump()) << "seed " << seed << " value " << i;
        ASSERT_EQ(value.read.dump(2), value.written.Dump(2)) << "seed " << seed << " value " << i;
        ASSERT_EQ(value.read.dump(), text::ParseJson("", value.read.dump(3)).Dump()) << "seed " << seed;
    }
}

TEST(Json, InBracesIsAnObjectIfEveryEntryIsANamedPair) {
    EXPECT_EQ(R"({"X":1.0,"all":[1,2,3]})", (text::Json{{"X", 1.0}, {"all", {1, 2, 3}}}).Dump());
    EXPECT_EQ(R"([["X",1.0],2])", (text::Json{{"X", 1.0}, 2}).Dump());
    EXPECT_EQ(R"([{"a":true}])", (text::Json{{{"a", true}}}).Dump());
}

TEST(Json, KeepsEveryBitOfADoubleAndTheSignOfZero) {
    std::mt19937_64 generator(15);
    for (int i = 0; i < 20000; ++i) {
        const double value = AnyFiniteDouble(generator);
        const double back = Reader::parse(text::Json(value).Dump()).get<double>();
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(back)) << i;
    }
    EXPECT_TRUE(std::signbit(Reader::parse(text::Json(-0.0).Dump()).get<double>()));
}

TEST(Json, WritesNullForANumberThatIsNotFinite) {
    RequiredMoves moves{};
    moves.RotateToPeg.RotationAngle = std::nan("");
    moves.ApproachPeg.YPosition = -HUGE_VAL;
    const std::vector<plans::PlacedMove> placed = plans::PlacedMoves(plans::MovesInOrder(moves));
    const Reader document = Reader::parse(plans::MovesJson(placed).Dump());
    EXPECT_TRUE(document[4]["record"]["RotationAngle"].is_null());
    EXPECT_TRUE(document[6]["record"]["YPosition"].is_null());
    EXPECT_EQ(0.0, document[6]["record"]["XPosition"].get<double>());
}

TEST(Document, BeginsWithItsFormatAndVersion) {
    std::ostringstream out;
    text::PrintDocument("pole", {{"answer", 42}}, out);
    EXPECT_EQ("{\n  \"format\": \"qmv40/pole\",\n  \"version\": 1,\n  \"answer\": 42\n}\n", out.str());
}

TEST(Json, ReplacesBytesThatAreNotUtf8) {
    EXPECT_EQ("\"a\xEF\xBF\xBD\"", text::Json("a\xFF").Dump());
    EXPECT_EQ("a\xEF\xBF\xBD", text::ValidUtf8("a\xFF"));
}

TEST(Json, IsRefusedWithLineAndReason) {
    const struct {
        const char* content;
        std::optional<std::size_t> line;
        const char* reason;
    } cases[] = {{"{\"a\": 1,\n\"a\": 2}", std::nullopt, "the member a stands twice"},
                 {"{\"a\": 1,\n\n oops", 3, "is not JSON from here on"},
                 {"", 1, "is not JSON from here on"},
                 {"[1e999]", std::nullopt, "holds a number that is too large"}};
    for (const auto& each : cases) {
        try {
            text::ParseJson("plan.json", each.content);
            ADD_FAILURE() << each.content;
        } catch (const text::InputError& error) {
            EXPECT_EQ("plan.json", error.file);
            EXPECT_EQ(each.line, error.line) << each.content;
            EXPECT_EQ(each.reason, error.reason);
        }
    }
}

} // namespace
