#pragma once

#include "tests/tools/diagnosis/Captures.h"

#include <functional>

using namespace qmv40;

/// A capture of a head on paper, one of very many: pole, mounting angle, stylus, noise and the positions are drawn from
/// the seed. The A set is captured at 45, -45, 135 or -135, as it should be.
struct DrawnCapture {
    explicit DrawnCapture(std::uint64_t seed);

    double Between(double least, double most);
    std::size_t Below(std::size_t count);
    template <typename T> T OneOf(std::initializer_list<T> choices) {
        return *(choices.begin() + Below(choices.size()));
    }
    /// A point captured anew, with the capture's noise, but written down as `written`.
    HeadAlignmentDataItem Captured(double a, double b, const HeadAlignmentDataItem& written);

    std::mt19937_64 generator;
    SimulatedHead head;
    double noise;
    double aSetHeldAt; ///< B
    double bSetHeldAt; ///< A
    Items aSet;
    Items bSet;
};

/// What a mistake must be found out as: its kind and, where there are some, the points that it concerns.
struct ExpectedFinding {
    diagnosis::FindingKind kind;
    std::vector<std::size_t> points;
};

/// A way to spoil a capture.
struct Mistake {
    const char* name;
    /// Makes the mistake. Empty when the mistake does not spoil this capture.
    std::function<std::optional<ExpectedFinding>(DrawnCapture&)> make;
};

const std::vector<Mistake>& AllMistakes();
