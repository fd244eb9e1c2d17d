#pragma once

#include "tools/diagnosis/CaptureModel.h"

namespace qmv40::diagnosis {

/// The least-squares fit of a head model to both sets.
struct HeadFit {
    HeadModel model;
    std::vector<model::Vector3> residuals; ///< measured less modelled, one for each point
    double sumOfSquares = 0.0;
    int redundancy = 0;            ///< three observations a point less the unknowns
    double mountingVariance = 0.0; ///< radians squared, for noise of standard deviation 1 in every coordinate

    double Rms() const;
    /// Of the noise in a coordinate, as the residuals show it.
    double NoiseVariance() const { return sumOfSquares / redundancy; }
    double MountingDegrees() const;
    /// Standard deviation of the mounting angle, degrees, by the noise that the residuals show.
    double MountingDeviation() const;
};

/// The fit nearest to `start`, errors included. Gauss and Newton's steps, damped where they lead astray.
HeadFit FitHead(std::span<const CapturedPoint> points, const HeadModel& start);

/// The best of all fits of a head without errors, whatever its mounting angle.
HeadFit FitHead(std::span<const CapturedPoint> points);

} // namespace qmv40::diagnosis
