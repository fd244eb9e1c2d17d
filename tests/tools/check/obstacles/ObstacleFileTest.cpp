#include "tools/check/obstacles/ObstacleFile.h"
#include "tools/check/obstacles/StlFile.h"
#include "tools/text/Failures.h"

#include "tests/support/TemporaryFolder.h"

#include <bit>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

using namespace qmv40;
using namespace qmv40::check::obstacles;
using testing::HasSubstr;

namespace {

constexpr const char* textOfOneTriangle = "solid plate\r\n"
                                          " facet normal 0 0 1\r\n"
                                          "  outer loop\r\n"
                                          "   vertex 0 0 5\r\n"
                                          "   VERTEX 1e1 0 5\r\n"
                                          "\tvertex 0 +10 5.0\r\n"
                                          "  endloop\r\n"
                                          " endfacet\r\n"
                                          "endsolid plate";

void Append(std::string& bytes, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFFU);
}

std::string BinaryOfOneTriangle(float lastCoordinate, const std::string& header = "solid or not") {
    std::string bytes = header + std::string(80 - header.size(), ' ');
    Append(bytes, 1);
    for (const float value : {0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 5.0F, 10.0F, 0.0F, 5.0F, 0.0F, 10.0F, lastCoordinate}) {
        Append(bytes, std::bit_cast<std::uint32_t>(value));
    }
    return bytes + std::string(2, '\0');
}

std::string RefusalOf(const std::string& content) {
    try {
        TrianglesOfStl("part.stl", content);
        return "accepted";
    } catch (const text::InputError& error) {
        return (error.line ? std::to_string(*error.line) + ": " : "") + error.reason;
    }
}

TEST(StlFile, ReadsTextAndBinaryAlike) {
    for (const std::string& content : {std::string(textOfOneTriangle), BinaryOfOneTriangle(5.0F)}) {
        const std::vector<Triangle> triangles = TrianglesOfStl("part.stl", content);
        ASSERT_EQ(1u, triangles.size());
        EXPECT_EQ(10.0, triangles[0].b.x);
        EXPECT_EQ(10.0, triangles[0].c.y);
        EXPECT_EQ(5.0, triangles[0].c.z);
    }
}

TEST(StlFile, RefusesFilesThatAreDamaged) {
    const struct {
        const char* why;
        std::string content;
        const char* refusal;
    } cases[] = {
        {"an empty file", "", "is not an STL file"},
        {"another format", "ply\nformat ascii", "is not an STL file"},
        {"cut off in a triangle", "solid\nvertex 1 2 3\n", "ends within a triangle"},
        {"binary, cut off", BinaryOfOneTriangle(5.0F, "made by x").substr(0, 120), "is not an STL file"},
        {"binary, not a number", BinaryOfOneTriangle(std::numeric_limits<float>::infinity()),
         "triangle 1 has a corner"},
        {"a word instead of a number", "solid\nvertex 1 2 x\n", "2: 'x' after 'vertex'"},
        {"a decimal comma", "solid\nvertex 1,5 2 3\n", "2: '1,5' after 'vertex'"},
        {"a fourth number", "solid\nvertex 1 2 3 4\n", "2: more than three numbers"},
        {"two corners", "solid\nvertex 1 2 3\nvertex 1 2 4\nendfacet\n", "4: a facet with 2 corners"},
        {"no triangle", "solid empty\nendsolid\n", "holds no triangle"},
    };
    for (const auto& each : cases) EXPECT_THAT(RefusalOf(each.content), HasSubstr(each.refusal)) << each.why;
}

class ObstacleFile : public testing::Test {
protected:
    std::vector<Obstacle> Read(const std::string& list) {
        return ReadObstacles(
            folder.Write("fixtures.json", R"({"format":"qmv40/obstacles","version":1,"obstacles":[)" + list + "]}"));
    }
    std::string Refusal(const std::string& list) {
        try {
            Read(list);
            return "accepted";
        } catch (const text::InputError& error) {
            return error.reason;
        }
    }

    const TemporaryFolder folder;
};

TEST_F(ObstacleFile, PlacesBoxesCylindersAndMeshes) {
    folder.Write("plate.stl", textOfOneTriangle);
    const std::vector<Obstacle> obstacles = Read(
        R"({"name":"vice","shape":"box","centre":{"X":100,"Y":0,"Z":0},"size":{"X":40,"Y":20,"Z":10},"turnedAboutZ":90},
           {"name":"post","shape":"cylinder","from":{"X":0,"Y":0,"Z":0},"to":{"X":0,"Y":0,"Z":50},"diameter":20},
           {"name":"plate","shape":"mesh","file":"plate.stl","at":{"X":0,"Y":0,"Z":100},"turnedAboutZ":180})");
    ASSERT_EQ(3u, obstacles.size());
    const auto distance = [&](std::size_t i, const model::Vector3& p) {
        return obstacles[i].solid->DistanceTo({p, p, p}, 1000.0);
    };
    EXPECT_EQ("vice", obstacles[0].name);
    EXPECT_NEAR(10.0, distance(0, {80, 0, 0}), 1e-9) << "turned by 90 degrees it is 20 mm wide along X";
    EXPECT_NEAR(10.0, distance(0, {100, 30, 0}), 1e-9);
    EXPECT_NEAR(5.0, distance(1, {15, 0, 25}), 0.006);
    EXPECT_NEAR(7.0, distance(2, {-2, -2, 112}), 1e-9)
        << "turned by 180 degrees it lies at -X and -Y; it is raised by 100 mm";
    EXPECT_EQ("mesh of 1 triangles, not closed: its surface alone counts", obstacles[2].description);
}

TEST_F(ObstacleFile, CanBeAnStlFile) {
    const std::vector<Obstacle> obstacles = ReadObstacles(folder.Write("plate.stl", textOfOneTriangle));
    ASSERT_EQ(1u, obstacles.size());
    EXPECT_EQ("plate.stl", obstacles[0].name);
}

TEST_F(ObstacleFile, RefusesUnknownMembersAndImpossibleShapes) {
    const char* const box = R"("centre":{"X":0,"Y":0,"Z":0},"size":{"X":1,"Y":1,"Z":1})";
    const struct {
        const char* why;
        std::string list;
        const char* refusal;
    } cases[] = {
        {"a mistyped member", std::string(R"({"name":"a","shape":"box","turnAboutZ":5,)") + box + "}",
         "obstacles[0] has a member turnAboutZ"},
        {"an unknown shape", R"({"name":"a","shape":"ball"})", "obstacles[0].shape is 'ball'"},
        {"no name", std::string(R"({"shape":"box",)") + box + "}", "obstacles[0] has no member name"},
        {"a flat box", R"({"name":"a","shape":"box","centre":{"X":0,"Y":0,"Z":0},"size":{"X":1,"Y":0,"Z":1}})",
         "obstacles[0].size.Y is not a length above 0"},
        {"a cylinder without length",
         R"({"name":"a","shape":"cylinder","from":{"X":0,"Y":0,"Z":0},"to":{"X":0,"Y":0,"Z":0},"diameter":2})",
         "both ends at one point"},
        {"null instead of a number",
         R"({"name":"a","shape":"cylinder","from":{"X":null,"Y":0,"Z":0},"to":{"X":0,"Y":0,"Z":9},
         "diameter":2})",
         "from.X is not a number"},
        {"a missing mesh file", R"({"name":"a","shape":"mesh","file":"none.stl"})", ""},
    };
    for (const auto& each : cases) {
        const std::string refusal = Refusal(each.list);
        EXPECT_NE("accepted", refusal) << each.why;
        EXPECT_THAT(refusal, HasSubstr(each.refusal)) << each.why;
    }
}

} // namespace
