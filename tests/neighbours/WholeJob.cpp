#include "tests/neighbours/WholeJob.h"

#include "tests/support/Calculator.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/SimulatedHead.h"

#include <gtest/gtest.h>

#include <bit>
#include <fstream>
#include <iterator>
#include <span>

namespace {

std::string Hex(std::uint64_t number) {
    constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4) text += digits[number >> shift & 15U];
    return text;
}

/// Records the results of calls, independently of locale and environment.
class Notes {
public:
    explicit Notes(Results& theResults) : results(theResults) {}

    template <typename Call> void Note(const char* what, Call&& call, std::span<const double> numbers = {}) {
        HRESULT code = S_OK;
        const Raised raised = RaisedBy([&] { code = call(); });
        std::string line = what;
        line += ' ' + Hex(static_cast<std::uint32_t>(raised.code == S_OK ? code : raised.code));
        if (raised.record) {
            for (const std::wstring& text :
                 {raised.record->source, raised.record->description, raised.record->helpFile})
                line += " | " + std::string(text.begin(), text.end());
        }
        for (const double number : numbers) line += ' ' + Hex(std::bit_cast<std::uint64_t>(number));
        results.lines.push_back(line);
    }

private:
    Results& results;
};

constexpr double noise = 1e-3; // so that a fit needs several steps

SimulatedHead HeadOf(int number) {
    SimulatedHead head;
    head.pole = {100.0 + number, -200.0 + 1.0 / (number + 3), 300.0};
    head.mountingAngle = 10.0 + number % 7;
    return head;
}

} // namespace

WholeJob::WholeJob(const std::filesystem::path& folder, int number)
    : fromA(15.0 * (number % 7)), fromB(15.0 * (number % 25) - 180.0), toA(15.0 * ((number + 4) % 7)),
      toB(15.0 * ((number + 13) % 25) - 180.0), wrongA(fromA + 7.0), wrongB(181.0 + number),
      path(folder / ("head " + std::to_string(number) + ".ini")), name(path),
      nowhere(folder / "no such folder" / "head.ini"), aSet(WithNoise(HeadOf(number).ASet(45.0), noise, 1)),
      bSet(WithNoise(HeadOf(number).BSet(60.0), noise, 2)), fewPoints(HeadOf(number).ASet(45.0, 3)) {}

Results WholeJob::Do() {
    Results results;
    Notes notes(results);
    const auto calculator = CreateCalculator();
    RequiredMoves moves{};
    XYZData position{};
    double angles[2]{};
    const auto positionNumbers = [&] { return std::span<const double>(&position.XPosition, 3); };
    const auto moveNumbers = [&] {
        return std::span<const double>(&moves.ApproachUnLockLever.XPosition, numbersInAPlan);
    };

    notes.Note("position unknown", [&] { return calculator->GetCurrentHeadPosition(&angles[0], &angles[1]); });
    notes.Note("no geometry", [&] { return calculator->CalculateMove(toA, toB, &moves); });
    notes.Note("no start", [&] { return calculator->GetStartPosition(&position); });
    notes.Note("few points", [&] { return calculator->EnterHeadGeometry(fewPoints.Address(), bSet.Address()); });
    notes.Note("other points", [&] { return calculator->EnterHeadGeometry(bSet.Address(), aSet.Address()); });
    notes.Note("enter", [&] { return calculator->EnterHeadGeometry(aSet.Address(), bSet.Address()); });
    notes.Note(
        "pole", [&] { return calculator->GetPoleSpherePosition(&position); }, positionNumbers());
    notes.Note("no such position", [&] { return calculator->SetCurrentHeadPosition(wrongA, 0.0); });
    notes.Note("set", [&] { return calculator->SetCurrentHeadPosition(fromA, fromB); });
    notes.Note(
        "start", [&] { return calculator->GetStartPosition(&position); }, positionNumbers());
    notes.Note("no such target", [&] { return calculator->CalculateMove(0.0, wrongB, &moves); });
    notes.Note(
        "plan", [&] { return calculator->CalculateMove(toA, toB, &moves); }, moveNumbers());
    notes.Note(
        "get", [&] { return calculator->GetCurrentHeadPosition(&angles[0], &angles[1]); }, angles);
    notes.Note("save", [&] { return calculator->SaveHeadGeometryToFile(name.Address()); });
    notes.Note("save nowhere", [&] { return calculator->SaveHeadGeometryToFile(nowhere.Address()); });
    notes.Note("load nothing", [&] { return calculator->LoadHeadGeometryFromFile(nowhere.Address()); });
    notes.Note("load", [&] { return calculator->LoadHeadGeometryFromFile(name.Address()); });
    notes.Note(
        "plan back", [&] { return calculator->CalculateMove(fromA, fromB, &moves); }, moveNumbers());
    notes.Note("no pointer", [&] { return calculator->GetPoleSpherePosition(nullptr); });

    std::ifstream file(path, std::ios::binary);
    results.file.assign(std::istreambuf_iterator<char>(file), {});
    return results;
}

void ExpectSame(const Results& actual, const Results& expected) {
    EXPECT_EQ(actual.lines, expected.lines);
    EXPECT_EQ(actual.file, expected.file);
}
