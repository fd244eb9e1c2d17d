#pragma once

#include "tests/support/FailingAllocations.h"
#include "tests/support/PreparedCalculator.h"

#include <functional>

/// Runs `call` in two series. In the runs of a series the first allocation fails, then the second, and so on, until no
/// allocation fails. In the first series it fails alone, in the second together with all later ones. After each run,
/// with memory available again, `check` gets the code that the call returned or threw. Returns the number of runs in
/// which an allocation failed.
inline long ForEveryAllocation(const std::function<HRESULT()>& call, const std::function<void(HRESULT)>& check) {
    constexpr long moreThanEnough = 20000;
    long failures = 0;
    for (const auto extent : {FailingAllocations::Extent::One, FailingAllocations::Extent::AllAfter}) {
        for (long n = 0; n < moreThanEnough; ++n) {
            SCOPED_TRACE(testing::Message() << "allocation " << n << " fails");
            HRESULT code = S_OK;
            FailingAllocations failing(n, extent);
            try {
                code = call();
            } catch (const HRESULT thrown) {
                code = thrown;
            }
            const bool reached = failing.Stop();
            check(code);
            if (!reached) {
                EXPECT_NE(code, E_OUTOFMEMORY) << "no allocation failed";
                break;
            }
            ++failures;
            if (n + 1 >= moreThanEnough) ADD_FAILURE() << "more than " << moreThanEnough << " allocations";
        }
    }
    return failures;
}
