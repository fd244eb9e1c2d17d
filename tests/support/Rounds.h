#pragma once

#include <cstdlib>

/// The number of repetitions in a test: `few`, multiplied by the environment variable QMV40_ROUNDS, which the long
/// forms of the tests set.
inline int Rounds(int few) {
    const char* const times = std::getenv("QMV40_ROUNDS");
    return times == nullptr ? few : few * std::atoi(times);
}
