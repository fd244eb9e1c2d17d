#pragma once

/// The number of random trials of a test: `wanted`, and a tenth where a sanitizer watches the program. A sanitizer
/// looks at the kind of access, which a few trials reach, and makes each trial many times as long.
constexpr int Trials(int wanted) { return wanted / QMV40_TRIALS_DIVISOR; }
