#pragma once

#include <cstddef>
#include <optional>
#include <string>

/// What the tool tells its caller when it ends.
enum ExitCode : int {
    exitDone = 0,
    exitRefused = 1,    ///< the component refused
    exitWrongUsage = 2, ///< the command line makes no sense
    exitBadFile = 3,    ///< a file is missing, malformed or cannot be written
    exitFindings = 4    ///< a check ran and found something wrong
};

/// An input file cannot be used.
struct InputError {
    std::string file;
    std::optional<std::size_t> line; ///< counted from 1; none when the file as a whole is meant
    std::string reason;
};

/// The command line asks for something that cannot be done.
struct UsageError {
    std::string reason;
};

/// The command has said all there is to say; only its exit code is left to tell.
struct CommandEnded {
    ExitCode exitCode;
};
