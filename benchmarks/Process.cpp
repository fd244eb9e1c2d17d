// One run of qmv40 as a process, and the sizes of the libraries.

#include "benchmarks/Subjects.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Runs a program without its output. Returns its exit code.
int RunSilently(const char* const* arguments) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    // The arguments are only read.
    const int failed =
        ::posix_spawn(&process, arguments[0], &actions, nullptr, const_cast<char* const*>(arguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    Verify(failed == 0, std::string("cannot start ") + arguments[0]);
    int status = 0;
    Verify(::waitpid(process, &status, 0) == process, "lost a process");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr std::array<const char*, 9> move{QMV40_TOOL, "move",  "--geometry", QMV40_BENCHMARK_HEAD, "--from", "0,0",
                                          "--to",     "45,90", nullptr};
constexpr std::array<const char*, 2> nothing{"/bin/true", nullptr};

void AddSize(Suite& suite, const std::string& name, const std::filesystem::path& stripped, double most,
             const std::string& limit) {
    constexpr double kilobyte = 1000.0;
    if (!std::filesystem::exists(stripped)) {
        std::fprintf(stderr, "No %s: its size is not in the table. ./test windows builds one.\n", name.c_str());
        return;
    }
    const double size = static_cast<double>(std::filesystem::file_size(stripped)) / kilobyte;
    suite.Report("size, stripped", name, Known(size, "kB"), Limit{most, limit});
}

} // namespace

void AddProcess(Suite& suite) {
    ::setenv("QMV40_SETTINGS", QMV40_SCENARIOS "/settings-override/settings.reg", 1);
    Verify(RunSilently(move.data()) == 0, "qmv40 move");
    suite.TimeByTheClock("process move", [] { RunSilently(move.data()); });
    suite.TimeByTheClock("process nothing", [] { RunSilently(nothing.data()); });
    const std::string subject = "qmv40 move, whole process", size = "one plan";
    suite.Report(subject, size, TimeOf("process move"), Limit{10e-3, "< 10 ms"});
    suite.Compare(subject, size, "process move", "/bin/true", "process nothing");
    const std::filesystem::path stripped = QMV40_STRIPPED;
    AddSize(suite, "libCoQMV40Calculator.so", stripped / "libCoQMV40Calculator.so", 500.0, "< 500 kB");
    AddSize(suite, "CoQMV40Calculator.dll", stripped / "CoQMV40Calculator.dll", 1000.0, "< 1 MB");
}
