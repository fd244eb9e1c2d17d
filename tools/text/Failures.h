#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace qmv40::text {

/// An input file cannot be used.
struct InputError {
    std::string file;
    std::optional<std::size_t> line; ///< counted from 1; none when the reason concerns the whole file
    std::string reason;
};

/// The command line asks for something that cannot be done.
struct UsageError {
    std::string reason;
};

} // namespace qmv40::text
