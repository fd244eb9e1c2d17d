// Several threads, each with its own apartment and calculators, get the same results as one thread.

#include "hosts/Subjects.h"
#include "hosts/WholeJob.h"

namespace {

struct Worker {
    const Server* server;
    const Answers* expected;
    int number;
    int rounds;
};

DWORD __stdcall Work(void* given) {
    const Worker& worker = *static_cast<Worker*>(given);
    CoInitializeEx(nullptr, 2); // a single-threaded apartment
    {
        WholeJob job(worker.number);
        for (int i = 0; i < worker.rounds; ++i) {
            Answers actual;
            job.Do(*worker.server, actual);
            Expect(Same(actual, *worker.expected), "a thread gets the results of a single thread", worker.number);
        }
    }
    CoUninitialize();
    return 0;
}

} // namespace

void Threads(int rounds) {
    constexpr int count = 6;
    const Server server;
    Answers expected;
    WholeJob(0).Do(server, expected);
    Worker workers[count];
    HANDLE threads[count];
    for (int i = 0; i < count; ++i) {
        workers[i] = {&server, &expected, i + 1, rounds};
        threads[i] = CreateThread(nullptr, 0, Work, &workers[i], 0, nullptr);
    }
    for (HANDLE const thread : threads) {
        WaitForSingleObject(thread, 0xFFFFFFFF);
        CloseHandle(thread);
    }
    Expect(server.CanUnloadNow() == S_OK, "nothing keeps the component loaded");
}
