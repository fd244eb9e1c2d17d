#pragma once

#include "tests/support/TemporaryFolder.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <optional>

/// Helpers of the fuzz targets. A target uses the component with an input of bytes and checks laws about the results. A
/// broken law ends the program, and libFuzzer records the input.

/// Ends the program and prints `sentence`, the law, if it is not `kept`.
inline void Promise(bool kept, const char* sentence) {
    if (kept) return;
    std::fprintf(stderr, "PROMISE BROKEN: %s\n", sentence);
    std::abort();
}

inline void WriteFile(const std::string& name, std::string_view content) {
    std::ofstream file(name, std::ios::binary);
    if (file << content << std::flush) return;
    std::perror(name.c_str());
    std::_Exit(EXIT_FAILURE); // a fault of the machine, not of the component
}

/// The content of a file; empty if it does not exist.
inline std::string ReadFile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Whether two numbers have the same bits. All not-a-numbers count as equal.
inline bool SameNumber(double left, double right) {
    if (std::isnan(left) || std::isnan(right)) return std::isnan(left) && std::isnan(right);
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

/// A double of any kind: an ordinary one, a special one, or any eight bytes.
inline double TakeDouble(FuzzedDataProvider& input) {
    using Limits = std::numeric_limits<double>;
    constexpr double nasty[]{0.0,
                             -0.0,
                             1.0,
                             Limits::denorm_min(),
                             Limits::min(),
                             Limits::epsilon(),
                             Limits::max(),
                             Limits::lowest(),
                             1e154,
                             1e-160,
                             999999999.0,
                             2147483647.5,
                             -2147483648.5,
                             Limits::infinity(),
                             -Limits::infinity(),
                             Limits::quiet_NaN()};
    const int kind = input.ConsumeIntegralInRange(0, 3);
    if (kind == 0) return input.PickValueInArray(nasty);
    if (kind == 1) return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
    if (kind == 2) return input.ConsumeIntegralInRange(-40000, 40000) / 16.0;
    return input.ConsumeFloatingPointInRange(-1000.0, 1000.0);
}
