#pragma once

/// Makes an allocation of the calling thread fail: `new` throws std::bad_alloc, `new (std::nothrow)` returns null.
/// Except on Windows, malloc and calloc return null too. The program must link the target qmv40_failing_allocations,
/// which replaces the global operators.
///
///     FailingAllocations failing(n);               // n allocations succeed, the next one fails
///     const HRESULT result = calculator->...;      // only the call under test: assertions allocate too
///     const bool reached = failing.Stop();         // false: the call made no more than n allocations
class FailingAllocations {
public:
    enum class Extent {
        One,     ///< a single failure; later allocations succeed
        AllAfter ///< the failure and all later allocations
    };

    explicit FailingAllocations(long successes, Extent extent = Extent::One) noexcept;
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    ~FailingAllocations();

    /// The number of blocks that are allocated now, by `new` and, except on Windows, by malloc and calloc in the
    /// program's own code. Only differences of two calls have a meaning.
    static long LiveBlocks() noexcept;

    /// Ends the failing. True if an allocation was made to fail.
    bool Stop() noexcept;
};
