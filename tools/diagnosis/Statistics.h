#pragma once

namespace qmv40::diagnosis {

/// How often chance alone does at least as much: small figures mean that it was not chance.

/// A ratio of two independent estimates of the same variance, with the given degrees of freedom, is `ratio` or more
/// (the upper tail of the F distribution). 1 where the ratio is 0 or less or not a number.
double FTestUpperTail(double ratio, double degreesOfNumerator, double degreesOfDenominator);

/// An estimate that is `standardDeviations` standard deviations off or more to either side, when the standard deviation
/// was estimated with the given degrees of freedom (both tails of Student's distribution).
double StudentTwoSided(double standardDeviations, double degreesOfFreedom);

} // namespace qmv40::diagnosis
