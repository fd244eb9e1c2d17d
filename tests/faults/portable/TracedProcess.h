#pragma once

#include <functional>

/// A system call that a traced process has come to.
struct SystemCall {
    long number;   ///< in the system's table
    bool isOnPipe; ///< it concerns a pipe, as calls of the sanitizers do that look at memory through one
};

/// What happens to a process at one of its system calls.
struct Interruption {
    enum class Kind {
        KillBefore, ///< ended when the call is about to be made
        KillAfter,  ///< ended when the call has been made
        Fail,       ///< the call is not made and fails with `error`
        Meanwhile   ///< waits before the call until `meanwhile` has run in the watching process
    };
    Kind kind;
    long call; ///< which one, counted from 0
    int error = 0;
    bool (*applies)(const SystemCall&) = nullptr; ///< for which calls alone; for all when null
    std::function<void()> meanwhile = nullptr;
};

/// How a traced process got on.
struct Traced {
    bool wasReached = false;     ///< it made the call
    bool wasInterrupted = false; ///< and the interruption applied to it
    SystemCall call{-1, false};
    int exitCode = -1; ///< -1 when it was killed
};

/// Runs `action` in a process of its own, a copy of this one, and interrupts it at a system call that it makes.
/// `verdict` follows in the same process, undisturbed, and gives its exit code. Throws when this system lets no process
/// watch another.
Traced RunTraced(const Interruption& interruption, const std::function<void()>& action,
                 const std::function<int()>& verdict);
