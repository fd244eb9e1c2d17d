#include "interface/ErrorCodes.h"
#include "neighbours/Neighbour.h"
#include "support/Calculator.h"
#include "support/ErrorRecord.h"
#include "support/Rounds.h"
#include "support/TwoGeometries.h"

#include <atomic>
#include <thread>

using namespace qmv40;

/// Many threads, each with a calculator of its own: none sees anything of another.

namespace {

constexpr int threadCount = 8;

/// Runs `action` on as many threads, all at once; it gets the number of its thread.
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

TEST_F(Threads, WithACalculatorEachSeeWhatEachWouldSeeAlone) {
    std::vector<Seen> alone;
    for (int i = 0; i < threadCount; ++i) alone.push_back(WholeJob(folder.Path(), i).Do());
    OnManyThreads([&](int i) {
        WholeJob own(folder.Path(), i);
        for (int round = 0; round < Rounds(6); ++round) ExpectSame(own.Do(), alone[static_cast<std::size_t>(i)]);
    });
    EXPECT_EQ(DllCanUnloadNow(), S_OK) << "and nothing is left of any";
}

/// Failures that can be told by their texts.
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

TEST_F(Threads, FindTheirOwnErrorsAndNobodyElses) {
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
        EXPECT_FALSE(TakeErrorRecord()) << "a record is there once";
    });
}

TEST_F(Threads, DoNotFindAnErrorThatWasRaisedOnAnother) {
    const auto calculator = CreateCalculator();
    double angle = 0.0;
    SetErrorInfo(0, nullptr);
    ASSERT_EQ(calculator->GetCurrentHeadPosition(&angle, &angle), QMV_E_POSITION_UNKNOWN);
    std::thread([] { EXPECT_FALSE(TakeErrorRecord()); }).join();
    const auto record = TakeErrorRecord();
    ASSERT_TRUE(record) << "and it waits where it was raised";
    EXPECT_EQ(record->description, L"Current Position is not known");

    std::thread([&] { EXPECT_EQ(calculator->GetCurrentHeadPosition(&angle, &angle), QMV_E_POSITION_UNKNOWN); }).join();
    EXPECT_FALSE(TakeErrorRecord()) << "one that was raised on a thread that has ended is gone with it";
}

TEST_F(Threads, MayTakeARecordAlongAndReadItElsewhere) {
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

TEST_F(Threads, SaveAndLoadOneFileTogether) {
    const auto saved = folder.Path("shared.ini");
    TwoGeometries::Put(saved, 1);
    OnManyThreads([&](int i) {
        const TemporaryFolder files;
        const auto own = TwoGeometries::Calculator(files.Path(), i % 2 + 1);
        const auto loader = CreateCalculator();
        Bstr name(saved);
        for (int round = 0; round < Rounds(10); ++round) {
            ASSERT_EQ(own->SaveHeadGeometryToFile(name.Address()), S_OK);
            ASSERT_EQ(loader->LoadHeadGeometryFromFile(name.Address()), S_OK);
            ASSERT_NE(TwoGeometries::HeldBy(*loader.Get()), 0) << "something of each";
        }
    });
}

} // namespace
