#include "qmv40.h"
#include "tests/support/ReferenceHeads.h"
#include "tests/support/SettingsFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::int32_t pointerCode = std::bit_cast<std::int32_t>(0x80004003U);  // E_POINTER
constexpr std::int32_t argumentCode = std::bit_cast<std::int32_t>(0x80070057U); // E_INVALIDARG

struct Destroyer {
    void operator()(qmv40_calculator* calculator) const { qmv40_destroy(calculator); }
};
using Calculator = std::unique_ptr<qmv40_calculator, Destroyer>;

Calculator Create() {
    qmv40_calculator* created = nullptr;
    EXPECT_EQ(qmv40_create(&created), 0);
    return Calculator(created);
}

std::vector<qmv40_alignment_point> InC(const std::vector<HeadAlignmentDataItem>& points) {
    std::vector<qmv40_alignment_point> converted;
    for (const auto& point : points) converted.push_back(std::bit_cast<qmv40_alignment_point>(point));
    return converted;
}

std::int32_t Enter(const Calculator& calculator, const ReferenceHead& head) {
    const auto a = InC(head.aAxisPoints);
    const auto b = InC(head.bAxisPoints);
    return qmv40_enter_geometry(calculator.get(), a.data(), a.size(), b.data(), b.size());
}

/// A head with the built-in dimensions.
const ReferenceHead& PlainHead() {
    static const ReferenceHead head = [] {
        for (const ReferenceHead& each : LoadReferenceHeads())
            if (each.settings.empty()) return each;
        throw std::runtime_error("no reference head has the built-in dimensions");
    }();
    return head;
}

Calculator CreateWithHead() {
    Calculator calculator = Create();
    EXPECT_EQ(Enter(calculator, PlainHead()), 0);
    EXPECT_EQ(qmv40_set_position(calculator.get(), 0.0, 0.0), 0);
    return calculator;
}

struct LastError {
    std::int32_t code;
    std::string source;
    std::string description;
};

LastError LastErrorOf(qmv40_calculator* calculator) {
    std::array<char, 512> source{};
    std::array<char, 512> description{};
    const std::int32_t code =
        qmv40_last_error(calculator, source.data(), source.size(), description.data(), description.size());
    return {code, source.data(), description.data()};
}

/// mm and degrees. The references have more digits, and the rounding of coordinates of some hundred millimetres is far
/// smaller.
constexpr double agreement = 1e-9;

testing::AssertionResult AgreesWith(const RequiredMoves& reference, const qmv40_moves& moves) {
    const auto expected = NumbersOf(reference);
    const auto actual = std::bit_cast<std::array<double, numbersInAPlan>>(moves);
    for (std::size_t i = 0; i < numbersInAPlan; ++i) {
        if (std::abs(actual[i] - expected[i]) > agreement)
            return testing::AssertionFailure() << "number " << i << " is " << actual[i] << ", not " << expected[i];
    }
    return testing::AssertionSuccess();
}

qmv40_moves PlanTo(const Calculator& calculator, double a, double b) {
    qmv40_moves moves{};
    EXPECT_EQ(qmv40_calculate_move(calculator.get(), a, b, &moves), 0);
    return moves;
}

bool AreEqual(const qmv40_moves& left, const qmv40_moves& right) {
    return std::memcmp(&left, &right, sizeof(qmv40_moves)) == 0;
}

} // namespace

TEST(CInterface, GivesThePlansOfTheReferenceHeads) {
    int plans = 0;
    for (const ReferenceHead& head : LoadReferenceHeads()) {
        SCOPED_TRACE(head.name);
        SettingsFixture settings;
        for (const auto& [name, text] : head.settings) settings.SetText(name.c_str(), text.c_str());
        const Calculator calculator = Create();
        ASSERT_EQ(Enter(calculator, head), 0);
        for (const ReferenceHead::Plan& plan : head.plans) {
            ASSERT_EQ(qmv40_set_position(calculator.get(), plan.from.a, plan.from.b), 0);
            EXPECT_TRUE(AgreesWith(plan.moves, PlanTo(calculator, plan.to.a, plan.to.b)));
            ++plans;
        }
        qmv40_xyz pole{};
        ASSERT_EQ(qmv40_pole_sphere(calculator.get(), &pole), 0);
        EXPECT_NEAR(pole.XPosition, head.headCentre[0], agreement);
        EXPECT_NEAR(pole.YPosition, head.headCentre[1], agreement);
        EXPECT_NEAR(pole.ZPosition, head.headCentre[2], agreement);
    }
    EXPECT_GT(plans, 20);
}

TEST(CInterface, BeginsAPlanAtTheStartPosition) {
    const Calculator calculator = CreateWithHead();
    qmv40_xyz start{};
    ASSERT_EQ(qmv40_start_position(calculator.get(), &start), 0);
    const qmv40_xyz first = PlanTo(calculator, 45.0, 90.0).ApproachUnLockLever;
    EXPECT_EQ(std::memcmp(&start, &first, sizeof start), 0);
}

TEST(CInterface, RefusesATargetWithACodeAndTexts) {
    const Calculator calculator = CreateWithHead();
    const qmv40_moves untouched = PlanTo(calculator, 15.0, 30.0);
    qmv40_moves moves = untouched;
    EXPECT_EQ(qmv40_calculate_move(calculator.get(), 50.0, 90.0, &moves), QMV40_E_INVALID_TARGET);
    EXPECT_TRUE(AreEqual(moves, untouched));
    const LastError error = LastErrorOf(calculator.get());
    EXPECT_EQ(error.code, QMV40_E_INVALID_TARGET);
    EXPECT_EQ(error.source, "CQMVCalculator::ValidateMoveTarget");
    EXPECT_EQ(error.description, "Invalid A Target Angle, value must be a 15 degree interval.");
    double a = 0.0;
    double b = 0.0;
    ASSERT_EQ(qmv40_get_position(calculator.get(), &a, &b), 0);
    EXPECT_EQ(a, 15.0);
    EXPECT_EQ(b, 30.0);
    EXPECT_EQ(LastErrorOf(calculator.get()).code, QMV40_E_INVALID_TARGET) << "a success must not remove the failure";
}

TEST(CInterface, RefusesCallsInTheWrongState) {
    const Calculator fresh = Create();
    qmv40_moves moves{};
    qmv40_xyz position{};
    double a = 0.0;
    double b = 0.0;
    qmv40_calculator* const it = fresh.get();
    EXPECT_EQ(qmv40_calculate_move(it, 0.0, 0.0, &moves), QMV40_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(qmv40_start_position(it, &position), QMV40_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(qmv40_get_position(it, &a, &b), QMV40_E_POSITION_UNKNOWN);
    EXPECT_EQ(qmv40_set_position(it, 7.0, 0.0), QMV40_E_INVALID_TARGET);
    EXPECT_EQ(qmv40_load(it, "no such folder/head.ini"), QMV40_E_READ_FROM_FILE);
    EXPECT_EQ(qmv40_save(it, "no such folder/head.ini"), QMV40_E_WRITE_TO_FILE);
    EXPECT_EQ(qmv40_enter_geometry(it, nullptr, 0, nullptr, 0), QMV40_E_TOO_FEW_POINTS);
}

TEST(CInterface, RefusesNullPointers) {
    const Calculator calculator = CreateWithHead();
    qmv40_calculator* const it = calculator.get();
    double angle = 0.0;
    EXPECT_EQ(qmv40_create(nullptr), pointerCode);
    EXPECT_EQ(qmv40_load(it, nullptr), pointerCode);
    EXPECT_EQ(qmv40_save(it, nullptr), pointerCode);
    EXPECT_EQ(qmv40_enter_geometry(it, nullptr, 7, nullptr, 7), pointerCode);
    EXPECT_EQ(qmv40_get_position(it, &angle, nullptr), pointerCode);
    EXPECT_EQ(qmv40_calculate_move(it, 45.0, 90.0, nullptr), pointerCode);
    EXPECT_EQ(qmv40_start_position(it, nullptr), pointerCode);
    EXPECT_EQ(qmv40_pole_sphere(it, nullptr), pointerCode);
    qmv40_destroy(nullptr);
}

TEST(CInterface, RefusesANullCalculator) {
    qmv40_moves moves{};
    qmv40_xyz position{};
    double angle = 0.0;
    EXPECT_EQ(qmv40_load(nullptr, "head.ini"), pointerCode);
    EXPECT_EQ(qmv40_save(nullptr, "head.ini"), pointerCode);
    EXPECT_EQ(qmv40_enter_geometry(nullptr, nullptr, 0, nullptr, 0), pointerCode);
    EXPECT_EQ(qmv40_set_position(nullptr, 0.0, 0.0), pointerCode);
    EXPECT_EQ(qmv40_get_position(nullptr, &angle, &angle), pointerCode);
    EXPECT_EQ(qmv40_calculate_move(nullptr, 0.0, 0.0, &moves), pointerCode);
    EXPECT_EQ(qmv40_start_position(nullptr, &position), pointerCode);
    EXPECT_EQ(qmv40_pole_sphere(nullptr, &position), pointerCode);
    EXPECT_EQ(qmv40_component(nullptr, nullptr, 0), pointerCode);
    const LastError error = LastErrorOf(nullptr);
    EXPECT_EQ(error.code, pointerCode);
    EXPECT_EQ(error.source, "qmv40_component");
    EXPECT_EQ(error.description, "the calculator is null");
}

TEST(CInterface, CutsTextsToTheSizeOfTheBuffer) {
    const Calculator calculator = CreateWithHead();
    qmv40_moves moves{};
    ASSERT_NE(qmv40_calculate_move(calculator.get(), 50.0, 90.0, &moves), 0);
    std::array<char, 10> text{"#########"};
    qmv40_last_error(calculator.get(), nullptr, 0, text.data(), 8);
    EXPECT_STREQ(text.data(), "Invalid");
    EXPECT_EQ(text[8], '#');
    qmv40_last_error(calculator.get(), nullptr, 0, text.data(), 1);
    EXPECT_STREQ(text.data(), "");
    EXPECT_EQ(qmv40_last_error(calculator.get(), text.data(), 0, nullptr, 100), QMV40_E_INVALID_TARGET);
}

TEST(CInterface, AcceptsFileNamesInUtf8AndRelativeOnes) {
    const TemporaryFolder folder;
    const Calculator calculator = CreateWithHead();
    const qmv40_moves moves = PlanTo(calculator, 45.0, 90.0);
    const std::string name = folder.Name("Köpfe für Prüfer.ini");
    ASSERT_EQ(qmv40_save(calculator.get(), name.c_str()), 0);
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / std::filesystem::path(u8"Köpfe für Prüfer.ini")));

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    const Calculator another = Create();
    EXPECT_EQ(qmv40_load(another.get(), "Köpfe für Prüfer.ini"), 0);
    std::filesystem::current_path(before);
    ASSERT_EQ(qmv40_set_position(another.get(), 0.0, 0.0), 0);
    const auto numbers = std::bit_cast<RequiredMoves>(moves);
    constexpr double tenDigits = 1e-6; // the file has ten digits; distances are some hundreds of millimetres
    const auto saved = NumbersOf(numbers);
    const auto loaded = NumbersOf(std::bit_cast<RequiredMoves>(PlanTo(another, 45.0, 90.0)));
    for (std::size_t i = 0; i < numbersInAPlan; ++i) EXPECT_NEAR(loaded[i], saved[i], tenDigits);
}

TEST(CInterface, RefusesAFileNameThatIsNotUtf8) {
    const Calculator calculator = CreateWithHead();
    EXPECT_EQ(qmv40_save(calculator.get(), "K\xF6pfe.ini"), argumentCode);
    EXPECT_EQ(LastErrorOf(calculator.get()).source, "qmv40_save");
}

TEST(CInterface, UsesTheComponentBesideIt) {
    const Calculator calculator = Create();
    std::array<char, 4096> file{};
    ASSERT_EQ(qmv40_component(calculator.get(), file.data(), file.size()), 0);
    const std::string name(file.data());
    const std::filesystem::path path(std::u8string(name.begin(), name.end()));
    EXPECT_EQ(path.filename().string().find("CoQMV40Calculator.") != std::string::npos, true) << name;
    EXPECT_TRUE(std::filesystem::equivalent(path.parent_path(), QMV40_BIN)) << name;
}

TEST(CInterface, ReturnsItsVersion) { EXPECT_STREQ(qmv40_version(), QMV40_VERSION); }

TEST(CInterface, WorksInManyThreadsWithSeparateCalculators) {
    const qmv40_moves expected = PlanTo(CreateWithHead(), 45.0, 90.0);
    std::vector<int> wrong(8, 0);
    std::vector<std::thread> threads;
    for (int& count : wrong) {
        threads.emplace_back([&expected, &count] {
            for (int round = 0; round < 5; ++round) {
                const Calculator calculator = CreateWithHead();
                qmv40_moves moves{};
                const auto refused = qmv40_calculate_move(calculator.get(), 50.0, 90.0, &moves);
                if (refused != QMV40_E_INVALID_TARGET || LastErrorOf(calculator.get()).code != refused) ++count;
                if (!AreEqual(PlanTo(calculator, 45.0, 90.0), expected)) ++count;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const int count : wrong) EXPECT_EQ(count, 0);
}

TEST(CInterface, ReportsAFailedCreationToTheSameThread) {
    EXPECT_EQ(qmv40_create(nullptr), pointerCode);
    std::thread([] { EXPECT_EQ(LastErrorOf(nullptr).code, 0); }).join();
    EXPECT_EQ(LastErrorOf(nullptr).source, "qmv40_create");
}
