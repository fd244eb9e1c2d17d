#pragma once

/// The limits of the diagnosis. Lengths in millimetres, angles in degrees.
namespace qmv40::diagnosis::thresholds {

/// How often chance alone may set off one kind of finding on a faultless capture; a test that looks at many points or
/// many explanations shares this among them. With some eight kinds of findings fewer than one faultless capture in a
/// thousand is called into question. Most real mistakes are many times larger than the noise, and still found.
inline constexpr double falseAlarmRate = 1e-4;

/// The normal distribution's quantile for that rate: noise alone moves a value by more than this many standard
/// deviations, to either side, that often.
inline constexpr double surely = 3.8906;

/// Points that agree better are taken to have this noise: coordinates have five or six decimals, and rounding follows
/// no law of chance.
inline constexpr double noiseFloor = 1e-5;
inline constexpr double leastVariance = noiseFloor * noiseFloor;

/// The least noise with which the standard deviation of a head centre is judged: no machine and head repeat better, and
/// a few points may agree better by chance.
inline constexpr double pointNoiseAtLeast = 1e-3;

/// The noise of a machine is a few micrometres; a scatter of a tenth of a millimetre is a mistake.
inline constexpr double noiseCeiling = 0.1;

/// Up to this, a set that scatters more than the other is taken to be noisy. More is taken for a mistake: in a set of
/// four points, one point that is off by leastWrongPlace gives about this scatter.
inline constexpr double unevenNoiseCeiling = 0.03;

/// An index position of a head is exact to a few hundredths of a degree. This angle moves the tip of the fitted stylus
/// by a distance. That distance is a part of the limit for the standard deviation of a coordinate about the fitted
/// head.
inline constexpr double indexCeiling = 0.02;

/// A fixed part of that limit, added to those of inexact index positions and of the noise. It allows for what the
/// fitted head does not explain: errors that are found are in the fit and need no allowance, whatever their size. The
/// value is a choice, and well below leastMove.
inline constexpr double smallErrors = 0.02;

/// The index positions are 15 apart. An angle that is wrong by whole steps, to within nearAStep, was written down wrong
/// or turned to by mistake. Other differences have other causes.
inline constexpr double indexStep = 15.0;
inline constexpr double nearAStep = 0.3;

/// A head that stands turned or tilted by this is not the same as before.
inline constexpr double leastWrongAngle = 0.03;

/// A mistake that moves a point by less is only suspicious: it makes a geometry worse, but does not contradict it.
inline constexpr double leastWrongPlace = 0.1;

/// An error that moves a run of points by this moves the head centre by about as much.
inline constexpr double leastMove = 0.05;

/// Squareness and tilt of the B axis. The limit of a warning moves the lever, 45 mm from the head centre, by some
/// hundredths of a millimetre. No head has a value at the limit of a fault.
inline constexpr double tiltWorthAWarning = 0.05;
inline constexpr double tiltBeyondAnyHead = 1.0;

/// The same for the axis offset: a good head has a few hundredths. When the sphere was moved between the sets, the
/// points look the same, and the head centre is off by as much.
inline constexpr double offsetWorthAWarning = 0.05;
inline constexpr double offsetBeyondAnyHead = 0.1;

/// Axes with a smaller angle between them are not the two axes of a head.
inline constexpr double nearlyParallel = 30.0;

/// A stylus that is shorter or longer is taken to be given in another unit. In inches the length of every stylus up to
/// 495 mm is a number below 19.5.
inline constexpr double shortestStylus = 19.5;
inline constexpr double longestStylus = 2000.0;

/// Two mounting angles that differ by less are equal: the lever moves by less than a hundredth of a millimetre, and
/// small errors of squareness change the two results differently.
inline constexpr double leastWrongRotation = 0.01;

/// A difference of rotations from which on it is a fault.
inline constexpr double rotationBeyondAll = 0.03;

/// Head centres that differ by more, and by more than noise explains, are different.
inline constexpr double leastWrongCentre = 0.05;

/// The component and the diagnosis compute the same circles. A difference above rounding is a finding.
inline constexpr double sameComputation = 1e-5;

/// Allowed differences from what the user has measured: the sphere with a qualified tip, the stylus with a ruler.
inline constexpr double sphereElsewhere = 0.1;
inline constexpr double otherStylusLength = 5.0;

/// Limits for twice the standard deviation of the rotation, for a warning and for a fault. The ball of a lever, 36 from
/// the vertical through the head centre, is then off by 0.03 and 0.09.
inline constexpr double rotationWithin = 0.05;
inline constexpr double rotationUnknown = 0.15;

/// The limit for twice the standard deviation of the head centre, when the user gives none. Five times as much is a
/// fault.
inline constexpr double centreWithin = 0.05;
inline constexpr double centreUnknown = 5.0;

} // namespace qmv40::diagnosis::thresholds
