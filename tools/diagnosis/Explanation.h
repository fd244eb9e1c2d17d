#pragma once

#include "tools/diagnosis/MistakeSearch.h"
#include "tools/diagnosis/fit/AxisCircle.h"
#include "tools/diagnosis/fit/HeadAxes.h"

namespace qmv40::diagnosis {

/// The factors of the squared residuals of each set. The noisier set has 1, the other one 1 or more.
struct SetWeights {
    double a = 1.0;
    double b = 1.0;

    bool AreEven() const { return a == b; }
};

/// What explains a capture, and the weights with which its head was fitted.
struct Explanation : HeadExplained {
    SetWeights weights;
};

/// The search assumes that all points scatter alike. Where one set scatters more, it finds mistake after mistake in
/// that set; where a mistake was made in one set, that set scatters more until it is found. So both are tried, and the
/// one with the better score is taken. `unlocking`: see SearchMistakes.
Explanation ExplainCapture(const captures::CapturedSets& sets, const model::Vector3& unlocking);

/// The noise in one coordinate of a point, the same for both sets unless they surely differ.
struct NoiseFigures {
    fit::PointNoise perSet;
    /// The noise times fit::StudentWidening, because it was estimated from few observations: a limit of some standard
    /// deviations can then be judged by the normal distribution.
    fit::PointNoise widened;
    int degreesOfFreedom; ///< of both circles
    bool isUneven;
    SetWeights weights; ///< with which the head was fitted
};

/// The noise is estimated from the circles and from the head that was fitted with the angles, which has more degrees of
/// freedom. The larger estimate counts. When the angles are inexact, so that the head has surely larger residuals
/// than the circles, only the circles count.
NoiseFigures NoiseOf(const captures::CapturedSets& sets, const fit::AxisCircle& a, const fit::AxisCircle& b,
                     const Explanation& explained);

} // namespace qmv40::diagnosis
