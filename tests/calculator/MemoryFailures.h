#pragma once

#include "tests/calculator/PreparedCalculator.h"
#include "tests/support/FailingAllocations.h"

#include <functional>

/// Fails one allocation of `call` after the other, first alone and then together with all later ones, until a call ends
/// before the allocation that would fail. `check` gets the code of each call, returned or thrown, when memory is back.
/// Returns how many allocations failed.
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
