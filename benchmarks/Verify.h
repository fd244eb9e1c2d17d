#pragma once

#include <stdexcept>
#include <string>

/// Only equals are compared: a peer that gives another answer than ours, or than it should, ends the program.
inline void Verify(bool condition, const std::string& what) {
    if (!condition) throw std::runtime_error("not the same answer: " + what);
}
