#pragma once

#include <cstddef>

/// Counts what the program asks of the heap through `new` while one of these lives. Not for two threads, nor two at a
/// time. The counting costs a test of one variable when none lives.
class Allocations {
public:
    Allocations() noexcept;
    Allocations(const Allocations&) = delete;
    Allocations& operator=(const Allocations&) = delete;
    ~Allocations();

    std::size_t Count() const noexcept;
    /// The most bytes that were held at a time.
    std::size_t PeakBytes() const noexcept;
};
