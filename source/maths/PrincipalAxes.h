#pragma once

#include "maths/CMaVector.h"
#include "maths/ScaledPoints.h"

/// Along which directions a set of points spreads most and least: the singular value decomposition of the centred
/// points, by rotating the frame until the three columns of coordinates are square to each other. Unlike the
/// eigenvectors of the covariance matrix in a fixed frame, the least direction is not blurred by the square of the
/// width over the length.
struct PrincipalAxes {
    enum class Digits {
        All,
        AllOfTheLongest, ///< the other two may lie anyhow across it
        Half             ///< enough to start from; reads the points once, unless they lie nearly on a line
    };

    /// Moves the base of `points` onto their mean, to the last digit.
    explicit PrincipalAxes(ScaledPoints& points, Digits digits = Digits::All) noexcept;

    /// No width that the rounding of the coordinates could not have made out of a straight line.
    bool IsStraight() const noexcept { return spread[1] <= straightWithin; }

    /// Right-handed orthonormal frame: most spread, middle, least.
    CMaVector axis[3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    /// Root mean square distance of the points from the mean along each axis.
    double spread[3] = {};

private:
    double straightWithin = 0.0;
};
