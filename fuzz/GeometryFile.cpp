// Loads and saves any bytes as a head geometry file. Laws:
// - a load succeeds if and only if all seven entries exist and none of them is 999999999 when it is read by the C
//   library's rules (a text that is not a number is 0); it fails with the one code and the texts for that, and with no
//   other;
// - after a load the pole sphere is at the position in the file, and every plan keeps the laws of PlanLaws.h; for a
//   head far outside any machine there is at least a plan;
// - a save into a new file holds the numbers to ten digits; a second load and save does not change them, except the
//   safe Z, which each load computes from the head centre;
// - a save into the same file, whatever else it holds, loads again to the same numbers;
// - after a failure a good file loads as it does in a new calculator.

#include "PlanLaws.h"

#include "interface/ErrorCodes.h"
#include "persistence/HeadGeometryFile.h"
#include "tests/head/SavedHead.h"
#include "tests/support/Bstr.h"
#include "tests/support/Calculator.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/ProfileText.h"

#include <vector>

using namespace qmv40;

namespace {

/// A scratch file, and its name in the forms that the calls take.
struct File {
    explicit File(const char* fileName)
        : name(Folder().Name(fileName)), wide(name.begin(), name.end()), argument(wide) {}

    static TemporaryFolder& Folder() {
        static TemporaryFolder folder;
        return folder;
    }

    std::string name;
    std::wstring wide;
    Bstr argument;
};

using SevenTexts = std::array<std::string, 7>;
using SevenNumbers = std::array<double, 7>; ///< centre, safe position, rotation
constexpr std::size_t safeZ = 5;
constexpr std::size_t rotation = 6;

SevenTexts TextsIn(const File& file) {
    SevenTexts texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::array<char, 349> buffer{};
        const HeadGeometryEntry& entry = headGeometryEntries[i];
        ReadProfileText(entry.section, entry.key, "999999999", buffer, file.wide.c_str());
        texts[i] = buffer.data();
    }
    return texts;
}

SevenNumbers NumbersIn(const SevenTexts& texts) {
    SevenNumbers numbers{};
    for (std::size_t i = 0; i < texts.size(); ++i) numbers[i] = std::strtod(texts[i].c_str(), nullptr);
    return numbers;
}

bool IsComplete(const SevenNumbers& numbers) { return std::ranges::find(numbers, 999999999.0) == numbers.end(); }

/// Loads a file that has these numbers and checks the result. Returns whether the file was accepted.
bool Load(IQMVCalculator2& calculator, File& file, const SevenNumbers& numbers) {
    const Raised loaded = ReturnedBy([&] { return calculator.LoadHeadGeometryFromFile(file.argument.Address()); });
    if (IsComplete(numbers)) {
        Promise(loaded.code == S_OK && !loaded.record, "a file with all seven numbers loads");
        return true;
    }
    Promise(loaded.code == QMV_E_READ_FROM_FILE, "a file without a number is refused with the code for that");
    Promise(loaded.record && loaded.record->source == L"RoundThePole::ReadDoubleFromIniFile" &&
                loaded.record->description == L"Failed To Read from File",
            "a file without a number is refused with the texts for that");
    return false;
}

HeadAngles TakeLegalAngles(FuzzedDataProvider& input) {
    return {15.0 * input.ConsumeIntegralInRange(0, 6), 15.0 * input.ConsumeIntegralInRange(-12, 12)};
}

struct Indexing {
    HeadAngles from;
    HeadAngles to;
};

RequiredMoves PlanOf(IQMVCalculator2& calculator, const Indexing& indexing) {
    RequiredMoves moves{};
    Promise(calculator.SetCurrentHeadPosition(indexing.from.a, indexing.from.b) == S_OK,
            "angles that can be reached are accepted");
    const Raised planned = RaisedBy([&] { calculator.CalculateMove(indexing.to.a, indexing.to.b, &moves); });
    Promise(planned.code == S_OK, "with a geometry and a position there is a plan");
    return moves;
}

void PromisePlans(IQMVCalculator2& calculator, const SevenNumbers& numbers, const Indexing& indexing) {
    const Vector3 centre{numbers[0], numbers[1], numbers[2]};
    XYZData pole{};
    Promise(calculator.GetPoleSpherePosition(&pole) == S_OK, "there is always a pole sphere");
    for (std::size_t i = 0; i < 3; ++i) {
        Promise(SameNumber(PositionIn(pole)[i], centre[i]), "the pole sphere is at the position in the file");
    }
    const RequiredMoves moves = PlanOf(calculator, indexing);
    // For a length that is not a number the comparison is false: the head counts as far away.
    const bool isOnAMachine = Length(centre) <= farthestCentre && std::isfinite(numbers[rotation]);
    const HeadModel head = IdealHead(std::fmod(numbers[rotation], 360.0), centre);
    if (isOnAMachine) PromisePlan(moves, head, indexing.from, indexing.to);
}

std::string TenDigits(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.9e", number);
    return text.data();
}

void Save(IQMVCalculator2& calculator, File& file) {
    const Raised saved = ReturnedBy([&] { return calculator.SaveHeadGeometryToFile(file.argument.Address()); });
    Promise(saved.code == S_OK && !saved.record, "a geometry can be saved into a regular file");
}

void PromiseSaves(IQMVCalculator2& calculator, File& original, SevenNumbers numbers) {
    static File fresh("fresh.ini");
    static File second("second.ini");
    numbers[safeZ] = numbers[2] + 35.0;
    std::filesystem::remove(fresh.name);
    Save(calculator, fresh);
    const SevenTexts saved = TextsIn(fresh);
    for (std::size_t i = 0; i < saved.size(); ++i) {
        Promise(saved[i] == TenDigits(numbers[i]), "a saved file has ten digits of the loaded numbers");
    }
    const ComPointer<IQMVCalculator2> another = CreateCalculator();
    const SevenNumbers savedNumbers = NumbersIn(saved);
    if (!Load(*another.Get(), fresh, savedNumbers)) return; // rounding has made a number 999999999
    std::filesystem::remove(second.name);
    Save(*another.Get(), second);
    const SevenTexts savedAgain = TextsIn(second);
    for (std::size_t i = 0; i < saved.size(); ++i) {
        Promise(i == safeZ || savedAgain[i] == saved[i], "a second load and save changes nothing");
    }
    Save(calculator, original);
    Promise(TextsIn(original) == saved, "a save into a file with other content writes the same numbers");
    Load(*another.Get(), original, savedNumbers);
}

/// A failed load does not change the result of the next one.
void PromiseRecovery(IQMVCalculator2& calculator, const Indexing& indexing) {
    static File good("good.ini");
    WriteFile(good.name, SavedHead{.headCentre = {412.5, -178.25, -655.0}, .rotation = 30.0}.Text());
    const SevenNumbers numbers = NumbersIn(TextsIn(good));
    const ComPointer<IQMVCalculator2> fresh = CreateCalculator();
    const bool areLoaded = Load(calculator, good, numbers) && Load(*fresh.Get(), good, numbers);
    Promise(areLoaded && SamePlan(PlanOf(calculator, indexing), PlanOf(*fresh.Get(), indexing)),
            "after a failure a good file gives the plans of a new calculator");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static File file("head.ini");
    FuzzedDataProvider input(data, size);
    const HeadAngles from = TakeLegalAngles(input);
    const Indexing indexing{from, TakeLegalAngles(input)};
    WriteFile(file.name, input.ConsumeRemainingBytesAsString());
    const SevenNumbers numbers = NumbersIn(TextsIn(file));

    const ComPointer<IQMVCalculator2> calculator = CreateCalculator();
    if (Load(*calculator.Get(), file, numbers)) {
        PromisePlans(*calculator.Get(), numbers, indexing);
        PromiseSaves(*calculator.Get(), file, numbers);
    } else {
        PromiseRecovery(*calculator.Get(), indexing);
    }
    return 0;
}
