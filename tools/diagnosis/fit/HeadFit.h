#pragma once

#include "tools/diagnosis/fit/CaptureModel.h"

namespace qmv40::diagnosis::fit {

/// The least-squares fit of a head model to both sets.
struct HeadFit {
    HeadModel model;
    std::vector<model::Vector3> residuals; ///< measured minus modelled, one for each point
    double sumOfSquares = 0.0;             ///< with the weights of the points
    int degreesOfFreedom = 0;              ///< three observations for each point, minus the unknowns

    // For noise of standard deviation 1 in every coordinate, by FindVariances
    double mountingVariance = 0.0;     ///< radians squared
    model::Vector3 poleSphereVariance; ///< mm squared: of the pole sphere's centre in X, Y and Z
    double tipVariance = 0.0;          ///< mm squared: of the tip in all directions together

    /// Of the residuals, whatever the weights.
    double Rms() const;
    /// The variance of the noise of a coordinate of a point of weight 1, by the residuals.
    double NoiseVariance() const { return sumOfSquares / degreesOfFreedom; }
    /// The standard deviation of an unknown, with the noise that the residuals show. `variance`: that of the unknown
    /// for noise of standard deviation 1.
    double StandardDeviation(double variance) const;
    double MountingDegrees() const;
};

/// The fit nearest to `start`, by the Levenberg-Marquardt method. The values of the errors of `start` are fitted too,
/// except those that are fixed. One step gives an estimate of the
/// sum of squares that the fit leaves.
HeadFit FitHead(std::span<const captures::CapturedPoint> points, const HeadModel& start, int mostSteps = 60);

/// The best fit of a head without errors, over all mounting angles.
HeadFit FitHead(std::span<const captures::CapturedPoint> points);

/// Finds the variances of the unknowns of `fit`, which was fitted to `points`.
void FindVariances(std::span<const captures::CapturedPoint> points, HeadFit& fit);

} // namespace qmv40::diagnosis::fit
