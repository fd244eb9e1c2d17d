#pragma once

namespace qmv40::diagnosis::fit {

/// p-values: how often chance alone gives a result at least as extreme.

/// The probability that the ratio of two independent estimates of one variance, with the given degrees of freedom, is
/// `ratio` or more (the upper tail of the F distribution). 1 for a ratio of 0 or less, or not a number.
double FTestUpperTail(double ratio, double degreesOfNumerator, double degreesOfDenominator);

/// The probability that an estimate is off by `standardDeviations` standard deviations or more, to either side, when
/// the standard deviation was estimated with the given degrees of freedom (both tails of Student's t distribution).
double StudentTwoSided(double standardDeviations, double degreesOfFreedom);

/// The factor by which a standard deviation that was estimated with the given degrees of freedom is widened so that it
/// can be read like a known one: Student's quantile divided by the normal quantile, both with `probability` in the two
/// tails together. More than 1, and infinite without any degree of freedom.
double StudentWidening(double degreesOfFreedom, double probability);

} // namespace qmv40::diagnosis::fit
