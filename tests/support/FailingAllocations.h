#pragma once

/// Makes an allocation of the calling thread fail: `new` gives std::bad_alloc, `new (std::nothrow)` gives null and so,
/// but for Windows, do malloc and calloc. The program that uses it links the target qmv40_failing_allocations, which
/// replaces the global operators.
///
///     FailingAllocations failing(n);               // n allocations succeed, the next one fails
///     const HRESULT result = calculator->...;      // only the call under test: assertions allocate too
///     const bool reached = failing.Stop();         // false: the call made no more than n allocations
class FailingAllocations {
public:
    enum class Extent {
        One,     ///< a single failure; memory is there again afterwards
        AllAfter ///< the failure and every one after it
    };

    explicit FailingAllocations(long successes, Extent extent = Extent::One) noexcept;
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    ~FailingAllocations();

    /// Blocks that are allocated now and not given back: `new`, and but for Windows malloc and calloc in the program's
    /// own code. Only differences mean anything.
    static long LiveBlocks() noexcept;

    /// Back to normal. True when an allocation was made to fail.
    bool Stop() noexcept;
};
