#pragma once

#include <cstdlib>

/// How often a test repeats its work: `few` times, multiplied by the environment variable QMV40_ROUNDS, which the long
/// forms of the tests set.
inline int Rounds(int few) {
    const char* const times = std::getenv("QMV40_ROUNDS");
    return times == nullptr ? few : few * std::atoi(times);
}
