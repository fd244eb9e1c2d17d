#pragma once

#include <functional>

/// A system call that a traced process is about to make.
struct SystemCall {
    long number;   ///< the number in the system's table
    bool isOnPipe; ///< its first argument is a pipe: the sanitizers check memory with such calls
};

/// What happens to a process at one of its system calls.
struct Interruption {
    enum class Kind {
        KillBefore, ///< killed before the call
        KillAfter,  ///< killed after the call
        Fail,       ///< the call is not made and fails with `error`
        Meanwhile   ///< waits before the call until `meanwhile` has run in the watching process
    };
    Kind kind;
    long call; ///< the index of the call, from 0
    int error = 0;
    bool (*applies)(const SystemCall&) = nullptr; ///< the calls that are interrupted; null: all calls
    std::function<void()> meanwhile = nullptr;
};

/// The result of a traced process.
struct Traced {
    bool wasReached = false;     ///< it reached the call
    bool wasInterrupted = false; ///< the interruption applied to the call
    SystemCall call{-1, false};
    int exitCode = -1; ///< -1 when it was killed
};

/// Runs `action` in a copy of this process and interrupts it at one of its system calls. Then `verdict` runs in the
/// same process without interruption and returns its exit code. Throws if this system does not let one process trace
/// another.
Traced RunTraced(const Interruption& interruption, const std::function<void()>& action,
                 const std::function<int()>& verdict);
