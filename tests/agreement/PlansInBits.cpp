// Prints the results of the component for every capture under scenarios/ and every reference head, each number as the
// 16 hexadecimal digits of its bits. Two builds of the component are equal to the last bit if they print the same.
//   plans_in_bits         350 plans of each capture, and the plans in the file of each reference head
//   plans_in_bits wide    also 350 plans of each reference head

#include "Component.h"
#include "formats/NumberText.h"
#include "interface/IQMVCalculator.h"
#include "platform/ComPointer.h"
#include "tests/support/AlignmentArray.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/SettingsFixture.h"
#include "tests/support/SourceFolders.h"

#include <algorithm>
#include <bit>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <regex>
#include <stdexcept>

using namespace qmv40;

namespace {

struct Head {
    std::string name;
    std::vector<std::pair<std::string, std::string>> settings;
    std::vector<HeadAlignmentDataItem> aAxisPoints;
    std::vector<HeadAlignmentDataItem> bAxisPoints;
    std::vector<ReferenceHead::Plan> ownPlans;
};

std::vector<HeadAlignmentDataItem> ReadCapture(const std::filesystem::path& path) {
    static const std::regex row("([-0-9.]+),([-0-9.]+),([-0-9.]+),([-0-9.]+),([-0-9.]+)\\r?");
    std::vector<HeadAlignmentDataItem> points;
    std::ifstream file(path);
    std::smatch match;
    for (std::string line; std::getline(file, line);) {
        if (!std::regex_match(line, match, row)) continue;
        const auto number = [&match](std::size_t field) { return TextToDouble(match.str(field).c_str()); };
        points.push_back({number(1), number(2), number(3), number(4), number(5)});
    }
    return points;
}

std::vector<std::pair<std::string, std::string>> ReadSettings(const std::filesystem::path& path) {
    static const std::regex setting("\"([^\"]+)\"=\"([^\"]*)\"\\r?");
    std::vector<std::pair<std::string, std::string>> settings;
    std::ifstream file(path);
    std::smatch match;
    for (std::string line; std::getline(file, line);)
        if (std::regex_match(line, match, setting)) settings.emplace_back(match[1], match[2]);
    return settings;
}

std::vector<Head> AllHeads() {
    std::vector<Head> heads;
    for (const auto& entry : std::filesystem::directory_iterator(ScenariosFolder()))
        if (entry.is_directory())
            heads.push_back({entry.path().filename().string(),
                             ReadSettings(entry.path() / "settings.reg"),
                             ReadCapture(entry.path() / "a-axis.csv"),
                             ReadCapture(entry.path() / "b-axis.csv"),
                             {}});
    std::sort(heads.begin(), heads.end(), [](const Head& left, const Head& right) { return left.name < right.name; });
    for (const ReferenceHead& head : LoadReferenceHeads())
        heads.push_back({head.name, head.settings, head.aAxisPoints, head.bAxisPoints, head.plans});
    return heads;
}

template <typename Numbers> void Print(const char* what, const Numbers& numbers) {
    std::printf("%s", what);
    for (const double number : numbers) std::printf(" %016" PRIx64, std::bit_cast<std::uint64_t>(number));
    std::printf("\n");
}

/// The points that were read are printed too. Otherwise a difference in reading the file would look like a difference
/// of the components.
void Print(const char* what, const std::vector<HeadAlignmentDataItem>& points) {
    for (const HeadAlignmentDataItem& point : points)
        Print(what, std::initializer_list<double>{point.APosition, point.BPosition, point.XPosition, point.YPosition,
                                                  point.ZPosition});
}

void Require(HRESULT result, const char* what) {
    if (FAILED(result)) throw std::runtime_error(what);
}

/// The number of head positions: A 0 to 90, B -180 to 180, in steps of 15 degrees.
constexpr unsigned positionCount = 7 * 25;
ReferenceHead::Position Position(unsigned number) {
    const unsigned a = number / 25, b = number % 25;
    return {15.0 * a, 15.0 * b - 180.0};
}

void PrintPlan(IQMVCalculator2& calculator, const ReferenceHead::Position& from, const ReferenceHead::Position& to) {
    Require(calculator.SetCurrentHeadPosition(from.a, from.b), "SetCurrentHeadPosition");
    RequiredMoves moves{};
    Require(calculator.CalculateMove(to.a, to.b, &moves), "CalculateMove");
    std::printf("%g,%g to %g,%g:", from.a, from.b, to.a, to.b);
    Print("", NumbersOf(moves));
}

void PrintPlans(IQMVCalculator2& calculator, const Head& head, bool isWide) {
    for (const ReferenceHead::Plan& plan : head.ownPlans) PrintPlan(calculator, plan.from, plan.to);
    if (!head.ownPlans.empty() && !isWide) return;
    // The factors and the number of positions have no common divisor: each position is a start twice and a target
    // twice.
    for (const unsigned factor : {36U, 73U})
        for (unsigned from = 0; from < positionCount; ++from)
            PrintPlan(calculator, Position(from), Position((from * factor + 11) % positionCount));
}

void PrintHead(IQMVCalculator2& calculator, const Head& head, bool isWide) {
    SettingsFixture store;
    for (const auto& [name, text] : head.settings) store.SetText(name.c_str(), text.c_str());
    std::printf("%s: %zu settings\n", head.name.c_str(), head.settings.size());
    Print("A", head.aAxisPoints);
    Print("B", head.bAxisPoints);
    AlignmentArray aAxisPoints(head.aAxisPoints);
    AlignmentArray bAxisPoints(head.bAxisPoints);
    Require(calculator.EnterHeadGeometry(aAxisPoints.Address(), bAxisPoints.Address()), "EnterHeadGeometry");
    XYZData pole{};
    Require(calculator.GetPoleSpherePosition(&pole), "GetPoleSpherePosition");
    Print("pole", std::initializer_list<double>{pole.XPosition, pole.YPosition, pole.ZPosition});
    PrintPlans(calculator, head, isWide);
}

} // namespace

int main(int count, char** arguments) try {
    const bool isWide = count > 1 && std::string(arguments[1]) == "wide";
    ComPointer<IClassFactory> factory;
    ComPointer<IQMVCalculator2> calculator;
    const auto getClassObject = ComponentEntry();
    if (getClassObject == nullptr) throw std::runtime_error("the component cannot be loaded");
    Require(getClassObject(CLSID_QMVCalculator, IID_IClassFactory, factory.Receive()), "DllGetClassObject");
    Require(factory->CreateInstance(nullptr, IID_IQMVCalculator2, calculator.Receive()), "CreateInstance");
    for (const Head& head : AllHeads()) PrintHead(*calculator.Get(), head, isWide);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
