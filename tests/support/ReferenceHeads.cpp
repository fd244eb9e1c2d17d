#include "tests/support/ReferenceHeads.h"

#include "tests/support/MoveFields.h"
#include "tests/support/SourceFolders.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

using Json = nlohmann::json;

constexpr const char* pointFields[] = {"XPosition", "YPosition", "ZPosition"};
constexpr const char* arcFields[] = {"XOrigin",         "YOrigin",         "ZOrigin",      "iRotationVector",
                                     "jRotationVector", "kRotationVector", "RotationAngle"};
std::vector<std::pair<const char*, const char*>> FieldsOfAPlan() {
    std::vector<std::pair<const char*, const char*>> fields;
    for (const MoveField& move : moveFields) {
        const auto add = [&](const char* field) { fields.emplace_back(move.name, field); };
        if (move.arc != nullptr) std::ranges::for_each(arcFields, add);
        if (move.position != nullptr) std::ranges::for_each(pointFields, add);
    }
    return fields;
}

RequiredMoves ReadMoves(const Json& json) {
    std::array<double, numbersInAPlan> numbers{};
    const auto fields = FieldsOfAPlan();
    std::transform(fields.begin(), fields.end(), numbers.begin(),
                   [&json](const auto& field) { return json.at(field.first).at(field.second).template get<double>(); });
    RequiredMoves moves;
    std::memcpy(&moves, numbers.data(), sizeof moves);
    return moves;
}

std::vector<HeadAlignmentDataItem> ReadPoints(const Json& rows) {
    std::vector<HeadAlignmentDataItem> points;
    for (const Json& row : rows) points.push_back({row.at(0), row.at(1), row.at(2), row.at(3), row.at(4)});
    return points;
}

ReferenceHead::Position ReadPosition(const Json& json) { return {json.at(0), json.at(1)}; }

ReferenceHead ReadHead(const std::filesystem::path& path) {
    std::ifstream stream(path);
    const Json json = Json::parse(stream);
    const Json& expected = json.at("expected");
    ReferenceHead head;
    head.name = json.at("name");
    for (const auto& [name, text] : json.at("settings").items()) head.settings.emplace_back(name, text);
    head.aAxisPoints = ReadPoints(json.at("aAxisPoints"));
    head.bAxisPoints = ReadPoints(json.at("bAxisPoints"));
    head.headCentre = expected.at("headCentre").get<std::array<double, 3>>();
    head.requiredRotationAroundZ = expected.at("requiredRotationAroundZ");
    head.quadrant = expected.at("quadrant");
    head.safePositionZ = expected.at("safePositionZ");
    for (const Json& entry : expected.at("file")) head.file.push_back({entry.at(0), entry.at(1), entry.at(2)});
    for (const Json& plan : expected.at("moves"))
        head.plans.push_back({ReadPosition(plan.at("from")), ReadPosition(plan.at("to")), ReadMoves(plan.at("moves"))});
    return head;
}

} // namespace

std::vector<ReferenceHead> LoadReferenceHeads() {
    const std::string folder = TestDataFolder() + "/heads";
    std::vector<ReferenceHead> heads;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) heads.push_back(ReadHead(entry.path()));
    if (heads.empty()) throw std::runtime_error("no reference heads in " + folder);
    std::sort(heads.begin(), heads.end(), [](const auto& left, const auto& right) { return left.name < right.name; });
    return heads;
}

std::array<double, numbersInAPlan> NumbersOf(const RequiredMoves& moves) {
    std::array<double, numbersInAPlan> numbers{};
    std::memcpy(numbers.data(), &moves, sizeof moves);
    return numbers;
}

std::string NameOfNumber(std::size_t index) {
    const auto [move, field] = FieldsOfAPlan().at(index);
    return std::string(move) + "." + field;
}
