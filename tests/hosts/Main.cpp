// A host that another compiler builds: for the platform's own C++ conventions, with the platform's unwinding. The same
// program built by the component's compiler must have the same results.
//   <program> <subject> [rounds]

#include "hosts/Host.h"
#include "hosts/Subjects.h"

int HostMain(int count, char** arguments);

int HostMain(int count, char** arguments) {
    const struct {
        const char* name;
        void (*run)(int rounds);
        int rounds;
    } subjects[] = {{"refusals", Refusals, 10000},
                    {"control-words", ControlWords, 200},
                    {"threads", Threads, 50},
                    {"cycles", Cycles, 400},
                    {"call-times", CallTimes, 1000}};
    for (const auto& subject : subjects) {
        if (count < 2 || strcmp(arguments[1], subject.name) != 0) continue;
        CoInitializeEx(nullptr, 2); // a single-threaded apartment
        subject.run(count > 2 ? atoi(arguments[2]) : subject.rounds);
        CoUninitialize();
        return Verdict();
    }
    printf("no such subject\n");
    return 2;
}
