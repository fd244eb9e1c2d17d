#pragma once

#include "calculator/PreparedCalculator.h"
#include "support/FailingAllocations.h"

#include <functional>

/// Fails one allocation of `call` after the other, first alone and then with all that follow, until a call gets by
/// without the one that would have failed. `check` is told each call's code, returned or thrown, with memory back to
/// normal. Returns how many allocations failed.
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
            if (!reached) break;
            ++failures;
            if (n + 1 >= moreThanEnough) ADD_FAILURE() << "no end of allocations";
        }
    }
    return failures;
}
