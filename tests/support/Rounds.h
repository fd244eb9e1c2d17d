#pragma once

#include <cstdlib>

/// How often a test repeats itself: `few` times, or as many times that as the environment variable QMV40_ROUNDS says.
/// The long forms set it.
inline int Rounds(int few) {
    const char* const times = std::getenv("QMV40_ROUNDS");
    return times == nullptr ? few : few * std::atoi(times);
}
