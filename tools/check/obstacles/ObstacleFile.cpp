#include "tools/check/obstacles/ObstacleFile.h"

#include "tools/check/obstacles/Mesh.h"
#include "tools/check/obstacles/StlFile.h"
#include "tools/model/Angles.h"
#include "tools/text/DocumentPlace.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"

namespace qmv40::check::obstacles {

namespace {

using model::Vector3;

using Place = text::DocumentPlace;

double LengthAt(const Place& place) {
    const double length = place.Number();
    if (!(length > 0.0)) place.Refuse("is not a length above 0");
    return length;
}

Vector3 PointAt(const Place& place) {
    place.AcceptOnly({"X", "Y", "Z"});
    return {place.Member("X").Number(), place.Member("Y").Number(), place.Member("Z").Number()};
}

Obstacle ObstacleOf(const std::string& name, const std::string& shape, std::vector<Triangle> triangles) {
    const std::size_t count = triangles.size();
    auto surface = std::make_shared<const std::vector<Triangle>>(triangles);
    auto mesh = std::make_shared<const Mesh>(std::move(triangles));
    const bool isMesh = shape == "mesh";
    const std::string closed = mesh->IsClosed() ? ", closed" : ", not closed: its surface alone counts";
    return {name, isMesh ? "mesh of " + std::to_string(count) + " triangles" + closed : shape, std::move(mesh),
            std::move(surface)};
}

/// Turns about the vertical axis through the origin, then shifts.
void Set(std::vector<Triangle>& triangles, double degrees, const Vector3& at) {
    const model::Rotation turn(model::ToRadians(degrees));
    for (Triangle& triangle : triangles) {
        for (Vector3* const corner : {&triangle.a, &triangle.b, &triangle.c}) {
            *corner = AboutZ(turn, *corner) + at;
        }
    }
}

double TurnOf(const Place& place) {
    const auto turn = place.Find("turnedAboutZ");
    return turn ? turn->Number() : 0.0;
}

std::vector<Triangle> BoxAt(const Place& place) {
    place.AcceptOnly({"name", "shape", "centre", "size", "turnedAboutZ"});
    const Place size = place.Member("size");
    size.AcceptOnly({"X", "Y", "Z"});
    std::vector<Triangle> box =
        BoxSurface({}, {LengthAt(size.Member("X")), LengthAt(size.Member("Y")), LengthAt(size.Member("Z"))});
    Set(box, TurnOf(place), PointAt(place.Member("centre")));
    return box;
}

std::vector<Triangle> CylinderAt(const Place& place) {
    place.AcceptOnly({"name", "shape", "from", "to", "diameter"});
    const Vector3 from = PointAt(place.Member("from"));
    const Vector3 to = PointAt(place.Member("to"));
    if (model::Distance(from, to) == 0.0) place.Refuse("has both ends at one point");
    return CylinderSurface(from, to, LengthAt(place.Member("diameter")) / 2.0);
}

std::vector<Triangle> MeshAt(const Place& place) {
    place.AcceptOnly({"name", "shape", "file", "at", "turnedAboutZ"});
    const auto folder = text::PathOf(place.file).parent_path();
    const std::string name = text::Utf8Name(folder / text::PathOf(place.Member("file").Text()));
    std::vector<Triangle> mesh = TrianglesOfStl(name, text::ReadWholeFile(name));
    const auto at = place.Find("at");
    Set(mesh, TurnOf(place), at ? PointAt(*at) : Vector3{});
    return mesh;
}

Obstacle ObstacleAt(const Place& place) {
    const std::string name = place.Member("name").Text();
    const std::string shape = place.Member("shape").Text();
    if (shape == "box") return ObstacleOf(name, shape, BoxAt(place));
    if (shape == "cylinder") return ObstacleOf(name, shape, CylinderAt(place));
    if (shape != "mesh") place.Member("shape").Refuse("is '" + shape + "', and not box, cylinder or mesh");
    return ObstacleOf(name, shape, MeshAt(place));
}

std::vector<Obstacle> ObstaclesOf(const std::string& fileName, const std::string& content) {
    const text::Json document = text::ParseJson(fileName, content);
    const Place whole{fileName, "", document};
    whole.AcceptOnly({"format", "version", "obstacles"});
    if (whole.Member("format").Text() != "qmv40/obstacles") whole.Member("format").Refuse("is not qmv40/obstacles");
    if (whole.Member("version").Number() != 1.0) whole.Member("version").Refuse("is not 1");
    std::vector<Obstacle> obstacles;
    for (const Place& each : whole.Member("obstacles").Elements()) obstacles.push_back(ObstacleAt(each));
    return obstacles;
}

} // namespace

std::vector<Obstacle> ReadObstacles(const std::string& fileName) {
    const std::string content = text::ReadWholeFile(fileName);
    // Blanks and a byte-order mark may come before a document.
    const std::size_t begin = content.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    if (begin != std::string::npos && content[begin] == '{') return ObstaclesOf(fileName, content);
    return {ObstacleOf(text::Utf8Name(text::PathOf(fileName).filename()), "mesh", TrianglesOfStl(fileName, content))};
}

} // namespace qmv40::check::obstacles
