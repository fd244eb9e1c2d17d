#pragma once

/// The number of random trials of a test: `wanted`, or a tenth of it in a program with a sanitizer. A sanitizer looks
/// for wrong accesses. Few trials reach all kinds of access, and each trial takes many times as long.
constexpr int Trials(int wanted) { return wanted / QMV40_TRIALS_DIVISOR; }
