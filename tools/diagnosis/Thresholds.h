#pragma once

/// What counts as too much. Lengths in millimetres, angles in degrees.
namespace qmv40::diagnosis::thresholds {

/// How often chance alone may set off one kind of finding on a faultless capture; a test that looks at many points or
/// many explanations shares this among them. With some eight kinds of findings fewer than one faultless capture in a
/// thousand is called into question, and a real mistake is still thousands of times larger than what is needed.
inline constexpr double falseAlarmRate = 1e-4;

/// Points that agree better than this are taken to scatter by this much: coordinates are written to five or six
/// decimals, and what lies below is rounding, which follows no law of chance.
inline constexpr double noiseFloor = 1e-5;
inline constexpr double leastVariance = noiseFloor * noiseFloor;

/// A point is not trusted better than this when a head centre's standard deviation is judged: no machine and head
/// return to a sphere more closely, and a handful of points may agree better by luck.
inline constexpr double pointNoiseAtLeast = 1e-3;

/// Machines touch a sphere to some thousandths; what scatters by a tenth is no noise.
inline constexpr double noiseCeiling = 0.1;

/// One set that scatters more than the other is believed to be noise up to this. It is little enough that a point off
/// its place by leastWrongPlace, in a set of few points, does not pass for noise.
inline constexpr double unevenNoiseCeiling = 0.03;

/// An index position of a head is in its place to a few hundredths at worst: how far points may miss the places that
/// their angles give them, on average.
inline constexpr double indexCeiling = 0.02;

/// The index positions are 15 apart. An angle that was another one by whole steps, to within this, was written down
/// wrong or turned to by mistake; by anything else nobody writes or turns it.
inline constexpr double indexStep = 15.0;
inline constexpr double nearAStep = 0.3;

/// A head that stands turned by this on its mount, or tilted, is not the one that was captured before.
inline constexpr double leastWrongAngle = 0.03;

/// What moves a point by less than this is merely suspicious: points a little off their places spoil a geometry, but
/// do not contradict it.
inline constexpr double leastWrongPlace = 0.1;

/// What moves a run of points by this moves the head centre by as much.
inline constexpr double leastMove = 0.05;

/// Axes out of square, a leaning B axis: what is worth a warning moves the lever, 45 from the head centre, by some
/// hundredths; what is called a fault no head can be.
inline constexpr double tiltWorthAWarning = 0.05;
inline constexpr double tiltBeyondAnyHead = 1.0;

/// The same for axes that pass each other: of a sound head they do by a few hundredths. A sphere that was moved between
/// the sets looks the same, and then the head centre is off by as much.
inline constexpr double offsetWorthAWarning = 0.05;
inline constexpr double offsetBeyondAnyHead = 0.1;

/// Axes nearer than this to parallel are not two axes of one head at all.
inline constexpr double nearlyParallel = 30.0;

/// A shorter or longer stylus is in other units: a length in inches is at most some tens.
inline constexpr double shortestStylus = 15.0;
inline constexpr double longestStylus = 2000.0;

/// Two mounting angles that agree better than this agree: it moves the lever by less than a hundredth, and axes a
/// little out of square let the two be read that differently.
inline constexpr double leastWrongRotation = 0.01;

/// Rotations that differ by this and more are a fault.
inline constexpr double rotationBeyondAll = 0.03;

/// Head centres that differ by this, and by more than noise explains, are not one.
inline constexpr double leastWrongCentre = 0.05;

/// The component and the diagnosis compute the same circles: what is more than rounding is a difference.
inline constexpr double sameComputation = 1e-5;

/// What the user measured otherwise: the sphere with a qualified tip, the stylus with a rule.
inline constexpr double sphereElsewhere = 0.1;
inline constexpr double otherStylusLength = 5.0;

/// Twice the standard deviation of the head centre, when the user asks for nothing else. Five times as much is a fault.
inline constexpr double centreWithin = 0.05;
inline constexpr double centreUnknown = 5.0;

} // namespace qmv40::diagnosis::thresholds
