#include "tests/faults/portable/TracedProcess.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The traced process, while it is traced.
class Tracee {
public:
    Tracee(const std::function<void()>& action, const std::function<int()>& verdict) : process(::fork()) {
        if (process == 0) {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(traceRefused);
            Run(action, verdict);
        }
        Await();
        if (!WIFSTOPPED(status)) throw std::runtime_error("this system does not let one process trace another");
        ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    }

    /// Continues to the next beginning or end of a system call. False if its action or the process has ended.
    bool GoOn(int signal = 0) {
        for (;;) {
            ::ptrace(PTRACE_SYSCALL, process, nullptr, signal);
            Await();
            if (!WIFSTOPPED(status) || WSTOPSIG(status) == SIGSTOP) return false;
            if (WSTOPSIG(status) == (SIGTRAP | 0x80)) return true; // 0x80: the mark of PTRACE_O_TRACESYSGOOD
            signal = WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
        }
    }

    void Kill() {
        ::kill(process, SIGKILL);
        Await();
    }

    /// Continues to the end of the process.
    int ExitCode() {
        while (WIFSTOPPED(status)) {
            ::ptrace(PTRACE_CONT, process, nullptr, nullptr);
            Await();
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

#ifdef __x86_64__
    long CallNumber() const { return ::ptrace(PTRACE_PEEKUSER, process, offsetof(user, regs.orig_rax), nullptr); }
    long FirstArgument() const { return ::ptrace(PTRACE_PEEKUSER, process, offsetof(user, regs.rdi), nullptr); }
    void SkipCall() const { Poke(offsetof(user, regs.orig_rax), -1); }
    void SetResult(long result) const { Poke(offsetof(user, regs.rax), result); }
#else // Killing works on every machine. Failing calls need the registers of the machine.
    long CallNumber() const { return -1; }
    long FirstArgument() const { return -1; }
    void SkipCall() const { throw std::logic_error("system calls cannot be made to fail on this machine"); }
    void SetResult(long) const {}
#endif

    /// Whether the first argument is the file descriptor of a pipe.
    bool IsOnPipe() const {
        std::error_code none;
        const auto file = "/proc/" + std::to_string(process) + "/fd/" + std::to_string(FirstArgument());
        return std::filesystem::read_symlink(file, none).string().starts_with("pipe:");
    }

private:
    static constexpr int traceRefused = 125;

    [[noreturn]] static void Run(const std::function<void()>& action, const std::function<int()>& verdict) {
        try {
            ::raise(SIGSTOP);
            action();
            ::raise(SIGSTOP);
            ::_exit(verdict());
        } catch (...) {
            std::abort(); // otherwise this copy of the test program would continue beside the original
        }
    }

    void Await() {
        while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
        }
    }
    [[maybe_unused]] void Poke(std::size_t place, long value) const {
        ::ptrace(PTRACE_POKEUSER, process, place, value);
    }

    pid_t process;
    int status = 0;
};

void Interrupt(Tracee& tracee, const Interruption& interruption) {
    if (interruption.kind == Interruption::Kind::Fail) tracee.SkipCall();
    if (interruption.kind == Interruption::Kind::KillBefore) return tracee.Kill();
    if (interruption.kind == Interruption::Kind::Meanwhile) interruption.meanwhile();
    const bool lives = tracee.GoOn();
    if (lives && interruption.kind == Interruption::Kind::Fail) tracee.SetResult(-interruption.error);
    if (lives && interruption.kind == Interruption::Kind::KillAfter) tracee.Kill();
}

} // namespace

Traced RunTraced(const Interruption& interruption, const std::function<void()>& action,
                 const std::function<int()>& verdict) {
    Tracee tracee(action, verdict);
    Traced traced;
    for (long call = 0; tracee.GoOn(); ++call) {
        if (call == interruption.call) {
            traced.wasReached = true;
            traced.call = {tracee.CallNumber(), tracee.IsOnPipe()};
            traced.wasInterrupted = interruption.applies == nullptr || interruption.applies(traced.call);
            if (traced.wasInterrupted) Interrupt(tracee, interruption);
            break;
        }
        if (!tracee.GoOn()) break; // to the end of the call
    }
    traced.exitCode = tracee.ExitCode();
    return traced;
}
