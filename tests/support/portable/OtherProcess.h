#pragma once

#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

/// Runs `action` in a separate process, so that it cannot change this one. Returns its result, 0 to 255, or -1 if the
/// process did not end normally.
template <typename Action> int CodeOfAnotherProcess(Action action) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            ::_exit(action());
        } catch (...) {
            std::abort(); // otherwise a second test program would continue
        }
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// The same, true when `action` returns true.
template <typename Action> bool InAnotherProcess(Action action) {
    return CodeOfAnotherProcess([&] { return action() ? 0 : 1; }) == 0;
}

inline constexpr uid_t nobody = 65534; ///< an ordinary user

/// The same as an ordinary user: if the test runs as root, the separate process gives up these rights.
template <typename Action> bool AsOrdinaryUser(Action action) {
    return InAnotherProcess([&] {
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) return false;
        return action();
    });
}
