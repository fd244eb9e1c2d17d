#pragma once

/// The elementary functions whose last bit differs from one C library to the next. The component calls these, and every
/// build of it chooses where they come from:
/// - SystemFunctions.cpp: the platform's C library, away from Windows;
/// - RoundedFunctions.cpp: our own, on Windows, where the C library takes them from the x87 unit: its sine is wrong by
///   many units in the last place near multiples of pi, and different processors may give different bits.
/// Angles are in radians. Arguments that are not finite give what the C library's functions give.
namespace qmv40 {

double Sine(double angle) noexcept;
double Cosine(double angle) noexcept;
/// Within [-pi/2, pi/2].
double ArcTangent(double slope) noexcept;
/// The angle of the direction (x, y), within [-pi, pi].
double ArcTangent(double y, double x) noexcept;

} // namespace qmv40
