#include "interface/ErrorCodes.h"
#include "tests/neighbours/Neighbour.h"
#include "tests/support/Calculator.h"
#include "tests/support/ErrorRecord.h"
#include "tests/support/RefusedSaves.h"
#include "tests/support/Rounds.h"
#include "tests/support/TwoGeometries.h"

#include <atomic>
#include <thread>

using namespace qmv40;

/// Many threads, each with its own calculator, do not affect each other.

namespace {

constexpr int threadCount = 8;

/// Runs `action` in several threads at once. It gets the number of its thread.
template <typename Action> void OnManyThreads(Action action) {
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back([&, i] {
            ++ready;
            while (ready < threadCount) std::this_thread::yield();
            action(i);
        });
    for (std::thread& thread : threads) thread.join();
}

class Threads : public Neighbour {};

TEST_F(Threads, WithSeparateCalculatorsGetTheResultsOfOneThread) {
    std::vector<Results> alone;
    for (int i = 0; i < threadCount; ++i) alone.push_back(WholeJob(folder.Path(), i).Do());
    OnManyThreads([&](int i) {
        WholeJob own(folder.Path(), i);
        for (int round = 0; round < Rounds(6); ++round) ExpectSame(own.Do(), alone[static_cast<std::size_t>(i)]);
    });
    EXPECT_EQ(DllCanUnloadNow(), S_OK) << "all objects must be deleted";
}

/// Failures with different texts.
Raised FailureOf(IQMVCalculator2& calculator, int kind) {
    double angle = 0.0;
    RequiredMoves moves{};
    switch (kind % 4) {
    case 0:
        return ReturnedBy([&] { return calculator.GetCurrentHeadPosition(&angle, &angle); });
    case 1:
        return ReturnedBy([&] { return calculator.SetCurrentHeadPosition(105.0, 0.0); });
    case 2:
        return ReturnedBy([&] { return calculator.SetCurrentHeadPosition(0.0, 7.0); });
    default:
        return RaisedBy([&] { calculator.CalculateMove(0.0, 0.0, &moves); });
    }
}

TEST_F(Threads, GetTheirOwnErrorRecordsOnly) {
    std::vector<std::wstring> texts;
    const auto calculator = CreateCalculator();
    for (int kind = 0; kind < 4; ++kind) texts.push_back(FailureOf(*calculator.Get(), kind).record.value().description);
    OnManyThreads([&](int i) {
        const auto own = CreateCalculator();
        for (int round = 0; round < Rounds(400); ++round) {
            const int kind = i + round;
            const Raised raised = FailureOf(*own.Get(), kind);
            ASSERT_TRUE(raised.record);
            ASSERT_EQ(raised.record->description, texts[static_cast<std::size_t>(kind % 4)]);
        }
        EXPECT_FALSE(TakeErrorRecord()) << "GetErrorInfo must have removed the record";
    });
}

TEST_F(Threads, CanReadTheRecordOfAnotherThread) {
    const auto calculator = CreateCalculator();
    double angle = 0.0;
    ASSERT_EQ(calculator->GetCurrentHeadPosition(&angle, &angle), QMV_E_POSITION_UNKNOWN);
    ComPointer<IErrorInfo> record;
    ASSERT_EQ(GetErrorInfo(0, record.Receive()), S_OK);
    std::thread([&] {
        SetErrorInfo(0, record.Get());
        const auto read = TakeErrorRecord();
        ASSERT_TRUE(read);
        EXPECT_EQ(read->source, L"CQMVCalculator::GetCurrentHeadPosition");
    }).join();
}

TEST_F(Threads, ShareTheClassFactoryAndTheModulesCounts) {
    OnManyThreads([&](int) {
        for (int round = 0; round < Rounds(300); ++round) {
            const auto factory = CalculatorFactory();
            factory->LockServer(1);
            const auto own = CreateCalculator();
            ASSERT_EQ(own->SetCurrentHeadPosition(15.0, 30.0), S_OK);
            ASSERT_EQ(DllCanUnloadNow(), S_FALSE);
            factory->LockServer(0);
        }
    });
    EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

/// Saves and loads the file again and again while other threads do the same. Returns how many saves succeeded.
int SavesAmongOthers(const std::filesystem::path& file, int which) {
    const TemporaryFolder own;
    const auto saver = TwoGeometries::Calculator(own.Path(), which);
    const auto loader = CreateCalculator();
    Bstr name(file);
    int saves = 0;
    for (int round = 0; round < Rounds(10); ++round) {
        const Raised saved = ReturnedBy([&] { return saver->SaveHeadGeometryToFile(name.Address()); });
        EXPECT_TRUE(saved.code == S_OK || IsPermittedRefusal(saved)) << std::hex << saved.code;
        if (saved.code == S_OK) ++saves;
        EXPECT_EQ(loader->LoadHeadGeometryFromFile(name.Address()), S_OK);
        EXPECT_NE(TwoGeometries::HeldBy(*loader.Get()), 0) << "a mixture of both geometries";
    }
    return saves;
}

TEST_F(Threads, ThatSaveAndLoadOneFileNeverLoadAMixture) {
    const auto saved = folder.Path("shared.ini");
    TwoGeometries::Put(saved, 1);
    std::atomic<int> saves{0};
    OnManyThreads([&](int i) { saves += SavesAmongOthers(saved, i % 2 + 1); });
    EXPECT_GT(saves, 0);
    EXPECT_NE(TwoGeometries::HeldByFile(saved), 0) << TwoGeometries::ContentOf(saved);
    const int next = 3 - TwoGeometries::HeldByFile(saved);
    const auto calculator = TwoGeometries::Calculator(folder.Path(), next);
    EXPECT_EQ(calculator->SaveHeadGeometryToFile(Bstr(saved).Address()), S_OK) << "no other thread uses the file now";
    EXPECT_EQ(TwoGeometries::HeldByFile(saved), next);
}

} // namespace
