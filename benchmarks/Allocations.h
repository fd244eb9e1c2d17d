#pragma once

#include <cstddef>

/// Counts the program's allocations through `new` while an object of this class lives. For one thread, and one object
/// at a time. While none lives, an allocation costs only one more test of a variable.
class Allocations {
public:
    Allocations() noexcept;
    Allocations(const Allocations&) = delete;
    Allocations& operator=(const Allocations&) = delete;
    ~Allocations();

    std::size_t Count() const noexcept;
    /// The largest number of bytes that were allocated at one time.
    std::size_t PeakBytes() const noexcept;
};
