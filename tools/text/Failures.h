#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qmv40::text {

/// An input file cannot be used.
struct InputError {
    std::string file;
    std::optional<std::size_t> line; ///< counted from 1; empty when the reason concerns the whole file
    std::string reason;
};

/// "FILE:LINE: reason", for people.
inline std::string MessageOf(const InputError& error) {
    return error.file + (error.line ? ":" + std::to_string(*error.line) : "") + ": " + error.reason;
}

/// An input file can be read, but its content may be a mistake. A person has to decide what to do with it.
struct DoubtfulInput {
    std::vector<InputError> problems; ///< at least one
    std::string remedy;               ///< sentences
};

/// The command line asks for something that cannot be done.
struct UsageError {
    std::string reason;
};

} // namespace qmv40::text
