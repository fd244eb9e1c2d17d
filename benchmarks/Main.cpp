// Times the component beside well-known libraries that do the same work, in one program and on the same data. Prints
// the results as a table of ratios. See docs/performance.md.

#include "benchmarks/Subjects.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <sys/utsname.h>
#include <thread>

namespace {

struct Subject {
    std::string_view name;
    void (*add)(Suite&);
};
constexpr Subject subjects[] = {{"circle", AddCircle}, {"plane-line", AddPlaneAndLine}, {"plan", AddPlan},
                                {"moves", AddMoves},   {"alignment", AddAlignment},     {"process", AddProcess}};

constexpr Effort whole{11, 0.05, true};
constexpr Effort quick{5, 0.02, false};
/// Enough to check that everything runs and gives the right answers; the times mean nothing.
constexpr Effort check{1, 1e-6, false};

struct Request {
    Effort effort = whole;
    std::string csv;
    std::vector<const Subject*> subjects; ///< empty: all
};

[[noreturn]] void ShowUsage() {
    std::fputs("[--quick | --check] [--csv FILE] [SUBJECT ...]\nSubjects:", stderr);
    for (const Subject& subject : subjects) std::fprintf(stderr, " %s", subject.name.data());
    std::fputc('\n', stderr);
    std::exit(2);
}

Request Parse(int count, char** arguments) {
    Request request;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        const auto* const subject = std::ranges::find(subjects, argument, &Subject::name);
        if (argument == "--quick")
            request.effort = quick;
        else if (argument == "--check")
            request.effort = check;
        else if (argument == "--csv" && i + 1 < count)
            request.csv = arguments[++i];
        else if (subject != std::end(subjects))
            request.subjects.push_back(subject);
        else
            ShowUsage();
    }
    return request;
}

std::string Processor() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
    return "unknown processor";
}

void PrintMachine() {
    utsname system{};
    ::uname(&system);
    double load[1] = {};
    ::getloadavg(load, 1);
    std::printf("%s, %u cores, %s %s, GCC %s, load at the start %.1f\n\n", Processor().c_str(),
                std::thread::hardware_concurrency(), system.sysname, system.release, __VERSION__, load[0]);
}

void RunRequest(const Request& request) {
    PrintMachine();
    Suite suite(request.effort);
    for (const Subject& subject : subjects) {
        if (!request.subjects.empty() && std::ranges::count(request.subjects, &subject) == 0) continue;
        std::fprintf(stderr, "Preparing %s\n", subject.name.data());
        subject.add(suite);
    }
    suite.Run();
    suite.Print();
    if (!request.csv.empty()) suite.WriteCsv(request.csv);
}

} // namespace

int main(int count, char** arguments) {
    const Request request = Parse(count, arguments);
    try {
        RunRequest(request);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
