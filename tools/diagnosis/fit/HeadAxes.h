#pragma once

#include "tools/diagnosis/fit/AxisCircle.h"

namespace qmv40::diagnosis::fit {

/// A figure and its standard deviation.
struct Estimate {
    double value = 0.0;
    double standardDeviation = 0.0;
};

/// The relation of the axes of the two circles, with standard deviations: from the noise of the points, through the
/// covariances of both circles. Angles in degrees.
struct HeadAxes {
    Estimate headCentre[3];       ///< the point of the B axis nearest to the A axis; not finite for parallel axes
    Estimate axisOffset;          ///< the distance between the two axes; its sign is arbitrary
    Estimate squareness;          ///< the angle between the axes minus 90; its sign is arbitrary
    Estimate offVerticalTowardsX; ///< the angle by which the B axis leans from the vertical, in the XZ plane
    Estimate offVerticalTowardsY; ///< the same in the YZ plane
    /// The angle between the B axis and the vertical, 0 to 90. Its standard deviation is that of both directions
    /// together: up to 1.4 times too large, and without meaning far from the vertical.
    Estimate offVertical;
    double rotationStandardDeviation; ///< of the A axis' azimuth, and so of the head's rotation
    double angleBetween;              ///< 0 to 90

    /// The standard deviation of the head centre, in all directions together.
    double CentreStandardDeviation() const;
};

/// The standard deviation of one coordinate of a point, in each set.
struct PointNoise {
    double aSet = 0.0;
    double bSet = 0.0;
};

HeadAxes CompareAxes(const AxisCircle& a, const AxisCircle& b, const PointNoise& noise);

/// The point of the B axis nearest to the A axis.
model::Vector3 NearestPointOfBAxis(const AxisCircle& a, const AxisCircle& b);

/// Azimuth of the A axis about Z, degrees; the axis has no direction, so half a turn is undetermined.
double AzimuthOfAAxis(const AxisCircle& a);

} // namespace qmv40::diagnosis::fit
