#include "tests/soak/Model.h"

#include "tests/support/SimulatedHead.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

constexpr double noise = 1e-3; // so that a fit needs several steps

SimulatedHead HeadOf(int number) {
    SimulatedHead head;
    head.pole = {100.0 + 50.0 * number, -200.0, 300.0 + number};
    head.mountingAngle = 10.0 * number;
    return head;
}

void Require(HRESULT code) {
    if (FAILED(code)) throw std::runtime_error("a new calculator fails with " + std::to_string(code));
}

std::filesystem::path FileOf(const std::filesystem::path& folder, int number) {
    return folder / ("geometry " + std::to_string(number) + ".ini");
}

} // namespace

Geometry::Geometry(const std::filesystem::path& folder, int number)
    : a(WithNoise(HeadOf(number).ASet(45.0), noise, 1)), b(WithNoise(HeadOf(number).BSet(60.0), noise, 2)),
      name(FileOf(folder, number)) {
    const auto calculator = CreateCalculator();
    Require(EnterInto(*calculator.Get()));
    Require(calculator->SaveHeadGeometryToFile(name.Address()));
}

Answers::Answers(const std::filesystem::path& folder) {
    for (std::size_t i = 0; i < geometryCount; ++i)
        geometries.push_back(std::make_unique<Geometry>(folder, static_cast<int>(i)));
    for (const auto& geometry : geometries)
        for (const bool isLoaded : {false, true}) held.push_back({geometry.get(), isLoaded});
    const auto scratch = folder / "scratch.ini";
    for (const Held& one : held) {
        for (const HeadAngles& from : positions)
            for (const HeadAngles& to : positions) {
                const auto calculator = CreateCalculator();
                RequiredMoves moves{};
                Require(one.GiveTo(*calculator.Get()));
                Require(calculator->SetCurrentHeadPosition(from.a, from.b));
                Require(calculator->CalculateMove(to.a, to.b, &moves));
                plans.push_back(NumbersOf(moves));
            }
        const auto calculator = CreateCalculator();
        Require(one.GiveTo(*calculator.Get()));
        Require(calculator->GetPoleSpherePosition(&poles.emplace_back()));
        Require(calculator->SaveHeadGeometryToFile(Bstr(scratch).Address()));
        std::ifstream file(scratch, std::ios::binary);
        savedTexts.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        file.close();
        std::filesystem::remove(scratch);
    }
}
