#include "tests/server/LateCall.h"

#include "interface/ErrorCodes.h"
#include "tests/server/Client.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <functional>
#include <thread>

using namespace qmv40;

/// A calculator belongs to one apartment. These tests use it from another one, and create calculators in many.

namespace {

/// An apartment in a separate thread. It creates an object and serves calls from other apartments until it is
/// destroyed.
class ServingThread {
public:
    /// `make` creates the object. The thread holds it and marshals its interface `iid`.
    ServingThread(std::function<ComPointer<IQMVCalculator2>()> make, REFIID iid)
        : thread([this, make = std::move(make), iid] { Serve(make, iid); }) {
        WaitForSingleObject(ready, INFINITE);
    }
    ServingThread(const ServingThread&) = delete;
    ServingThread& operator=(const ServingThread&) = delete;
    ~ServingThread() {
        SetEvent(stop);
        thread.join();
        CloseHandle(ready);
        CloseHandle(stop);
    }

    /// The object for the calling thread's apartment. Can be called once.
    HRESULT Receive(REFIID iid, void** object) {
        return CoGetInterfaceAndReleaseStream(std::exchange(stream, nullptr), iid, object);
    }

private:
    void Serve(const std::function<ComPointer<IQMVCalculator2>()>& make, IID iid) {
        const Apartment apartment;
        const auto calculator = make();
        CoMarshalInterThreadInterfaceInStream(iid, calculator.Get(), &stream);
        SetEvent(ready);
        while (MsgWaitForMultipleObjects(1, &stop, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) DispatchMessageW(&message);
        }
    }

    HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE stop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    IStream* stream = nullptr;
    std::thread thread;
};

class OtherApartment : public RegisteredClient {
protected:
    void SetUp() override {
        RegisteredClient::SetUp();
        serving = std::make_unique<ServingThread>([] { return At(15.0, 30.0); }, IID_IQMVCalculator2);
        ASSERT_EQ(serving->Receive(IID_IQMVCalculator2, calculator.Receive()), S_OK);
        ASSERT_TRUE(IsProxy(*calculator.Get()));
    }
    void TearDown() override {
        calculator = {};
        serving.reset();
        RegisteredClient::TearDown();
    }

    /// Checks that the object still works.
    void ExpectItWorks() { ExpectNear(Pole(*calculator.Get()), {100.0, -200.0, 300.0}); }

    std::unique_ptr<ServingThread> serving;
    ComPointer<IQMVCalculator2> calculator;
};

TEST_F(OtherApartment, ReachesNumbersAndPositions) {
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{15.0, 30.0}));
    EXPECT_EQ(calculator->SetCurrentHeadPosition(90.0, -180.0), S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{90.0, -180.0}));
    ExpectItWorks();
}

TEST_F(OtherApartment, ReceivesTheWholePlan) {
    const auto direct = At(15.0, 30.0);
    RequiredMoves moves{};
    RequiredMoves expected{};
    EXPECT_EQ(calculator->CalculateMove(90.0, -45.0, &moves), S_OK);
    EXPECT_EQ(direct->CalculateMove(90.0, -45.0, &expected), S_OK);
    EXPECT_EQ(std::memcmp(&moves, &expected, sizeof moves), 0);
}

TEST_F(OtherApartment, SavesAndLoadsByFileName) {
    const TemporaryFolder folder;
    Bstr path(folder.Path("head.ini"));
    EXPECT_EQ(calculator->SaveHeadGeometryToFile(path.Address()), S_OK);
    EXPECT_TRUE(std::filesystem::exists(folder.Path("head.ini")));
    EXPECT_EQ(calculator->LoadHeadGeometryFromFile(path.Address()), S_OK);
    ExpectItWorks();
}

// After a failed call the marshaller decides the values of the out parameters, not the object.
TEST_F(OtherApartment, ReceivesFailureCodes) {
    EXPECT_EQ(calculator->SetCurrentHeadPosition(7.0, 0.0), QMV_E_INVALID_TARGET);
    EXPECT_EQ(PositionCode(*calculator.Get()), QMV_E_POSITION_UNKNOWN);
    ExpectItWorks();
}

TEST_F(OtherApartment, HasOneIdentityForTheObjectToo) {
    ComPointer<IQMVCalculator> first;
    ASSERT_EQ(calculator->QueryInterface(IID_IQMVCalculator, first.Receive()), S_OK);
    EXPECT_EQ(Ask(*first.Get(), IID_IUnknown).Get(), Ask(*calculator.Get(), IID_IUnknown).Get());
}

TEST_F(OtherApartment, CallsMethodsWithNumbersByName) {
    EXPECT_EQ(Call(*calculator.Get(), L"SetCurrentHeadPosition", 45.0, 60.0).code, S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{45.0, 60.0}));
}

// Some marshallers cannot transfer arrays of records. Then the call must fail, and the geometry must not change.
TEST_F(OtherApartment, SendsPointArraysOrTheCallFails) {
    SimulatedHead elsewhere = Head();
    elsewhere.pole = {0.0, 0.0, 0.0};
    const HRESULT entered = Enter(*calculator.Get(), elsewhere);
    RecordProperty("entered", std::to_string(entered));
    if (FAILED(entered)) return ExpectItWorks();
    ExpectNear(Pole(*calculator.Get()), {0.0, 0.0, 0.0});
}

// Some marshallers cannot transfer error records. If one can, it must be the right record.
TEST_F(OtherApartment, ReceivesTheErrorRecordOrNone) {
    const Raised raised = ReturnedBy([&] { return calculator->SetCurrentHeadPosition(0.0, 7.0); });
    EXPECT_EQ(raised.code, QMV_E_INVALID_TARGET);
    RecordProperty("carried", raised.record ? "yes" : "no");
    if (raised.record) {
        EXPECT_EQ(raised.record->source, L"CQMVCalculator::ValidateMoveTarget");
    }
}

// A code that CalculateMove throws in the object's apartment cannot be caught in another one. The call fails with some
// code.
TEST_F(OtherApartment, ReceivesAFailureForARefusedPlan) {
    // Wine's marshalling code is built by the same compiler, and the exception would end the program.
    if (!catchesWhatIsThrown) GTEST_SKIP();
    RequiredMoves moves{};
    EXPECT_TRUE(FAILED(calculator->CalculateMove(7.0, 0.0, &moves)));
    ExpectItWorks();
    EXPECT_EQ(calculator->CalculateMove(90.0, 0.0, &moves), S_OK);
}

class ManyApartments : public RegisteredClient {};

TEST_F(ManyApartments, SingleThreadedClientsGetTheObjectItself) {
    const auto calculator = CreateRegistered();
    ASSERT_TRUE(calculator);
    EXPECT_FALSE(IsProxy(*calculator.Get()));
}

/// Runs `work` in several threads at once, each in its own apartment. Returns the number of successes.
int SuccessesOnThreads(int threads, const std::function<bool(int)>& work) {
    std::atomic<int> successes{0};
    std::atomic<int> arrived{0};
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i) {
        running.emplace_back([&, i] {
            const Apartment apartment;
            ++arrived;
            while (arrived < threads) std::this_thread::yield();
            if (work(i)) ++successes;
        });
    }
    for (std::thread& thread : running) thread.join();
    return successes;
}

constexpr int threads = 8;
constexpr int rounds = 50;

bool SetsAndGets(IQMVCalculator& calculator, double a, double b) {
    double foundA = 0.0;
    double foundB = 0.0;
    return calculator.SetCurrentHeadPosition(a, b) == S_OK &&
           calculator.GetCurrentHeadPosition(&foundA, &foundB) == S_OK && foundA == a && foundB == b;
}

TEST_F(ManyApartments, CreateSeparateObjectsAtTheSameTime) {
    EXPECT_EQ(SuccessesOnThreads(threads,
                                 [](int i) {
                                     for (int round = 0; round < rounds; ++round) {
                                         const auto calculator = CreateRegistered();
                                         if (!calculator || !SetsAndGets(*calculator.Get(), 0.0, 15.0 * i))
                                             return false;
                                         if (References(*calculator.Get()) != 1) return false;
                                     }
                                     return true;
                                 }),
              threads);
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(ManyApartments, CountClassObjectsObjectsAndLocksTogether) {
    const auto work = [&](int i) {
        for (int round = 0; round < rounds; ++round) {
            const auto factory = server.Factory();
            const auto calculator = server.Create();
            if (!factory || !calculator || !SetsAndGets(*calculator.Get(), 90.0, -15.0 * i)) return false;
            if (factory->LockServer(TRUE) != S_OK || server.CanUnloadNow() != S_FALSE) return false;
            if (factory->LockServer(FALSE) != S_OK) return false;
        }
        return true;
    };
    EXPECT_EQ(SuccessesOnThreads(threads, work), threads);
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

} // namespace
