#include "interface/ErrorCodes.h"
#include "tests/neighbours/Neighbour.h"
#include "tests/support/Calculator.h"
#include "tests/support/Rounds.h"
#include "tests/support/TwoGeometries.h"

#include <atomic>
#include <csignal>
#include <iostream>
#include <sys/time.h>

using namespace qmv40;

/// The host's signal handlers interrupt system calls, and the system does not restart them.

namespace {

std::atomic<long> signalCount{0};

/// Sends a signal to the process every 0.1 ms.
class Interrupting {
public:
    Interrupting() {
        struct sigaction action {};
        action.sa_handler = [](int) { signalCount.fetch_add(1); };
        action.sa_flags = 0; // in particular not SA_RESTART
        ::sigaction(SIGALRM, &action, &before);
        const itimerval often{{0, 100}, {0, 100}};
        ::setitimer(ITIMER_REAL, &often, nullptr);
    }
    Interrupting(const Interrupting&) = delete;
    Interrupting& operator=(const Interrupting&) = delete;
    ~Interrupting() {
        const itimerval never{};
        ::setitimer(ITIMER_REAL, &never, nullptr);
        ::sigaction(SIGALRM, &before, nullptr);
    }

private:
    struct sigaction before {};
};

class Signals : public Neighbour {};

TEST_F(Signals, InterruptNoCall) {
    const auto path = folder.Path("head.ini");
    Bstr name(path);
    const ComPointer<IQMVCalculator2> savers[] = {TwoGeometries::Calculator(folder.Path(), 1),
                                                  TwoGeometries::Calculator(folder.Path(), 2)};
    const auto loader = CreateCalculator();
    TwoGeometries::Put(path, 2);
    signalCount = 0;
    {
        const Interrupting interrupting;
        for (int i = 0; i < Rounds(150); ++i) {
            ASSERT_EQ(savers[i % 2]->SaveHeadGeometryToFile(name.Address()), S_OK);
            ASSERT_EQ(loader->LoadHeadGeometryFromFile(name.Address()), S_OK);
            ASSERT_EQ(TwoGeometries::HeldBy(*loader.Get()), i % 2 + 1);
        }
    }
    EXPECT_GT(signalCount, 100);
    std::cout << Rounds(150) << " saves and loads under " << signalCount << " signals" << std::endl;
}

} // namespace
