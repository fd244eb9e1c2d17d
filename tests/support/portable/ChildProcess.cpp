#include "tests/support/ChildProcess.h"

#include <array>
#include <csignal>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

struct ChildProcess::State {
    pid_t process = -1;
    bool hasEnded = false;
    int exitCode = -1;

    void Collect(int options) {
        int status = 0;
        if (hasEnded || ::waitpid(process, &status, options) != process) return;
        hasEnded = true;
        exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

ChildProcess::ChildProcess(const std::string& job, const std::filesystem::path& path)
    : state(std::make_unique<State>()) {
    // Resolved, because valgrind runs this program with another executable behind the link.
    std::string program = std::filesystem::read_symlink("/proc/self/exe");
    std::string marker = "--job", name = job, file = path;
    const std::array<char*, 5> arguments{program.data(), marker.data(), name.data(), file.data(), nullptr};
    if (::posix_spawn(&state->process, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0)
        throw std::runtime_error("the test program cannot be started a second time");
}

ChildProcess::~ChildProcess() { Kill(); }

void ChildProcess::Kill() {
    if (!state->hasEnded) ::kill(state->process, SIGKILL);
    Wait();
}

int ChildProcess::Wait() {
    state->Collect(0);
    return state->exitCode;
}

bool ChildProcess::IsRunning() {
    state->Collect(WNOHANG);
    return !state->hasEnded;
}
