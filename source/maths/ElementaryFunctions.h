#pragma once

/// The elementary functions whose last bit differs between C libraries. The component calls these; each build selects
/// one implementation:
/// - SystemFunctions.cpp, on all systems except Windows: those of the C library;
/// - RoundedFunctions.cpp, on Windows: our own. The C library of Windows uses the x87 unit, whose sine is wrong by many
///   units in the last place near multiples of pi and may differ between processors.
/// Angles are in radians. Arguments that are not finite give what the C library's functions give.
namespace qmv40 {

double Sine(double angle) noexcept;
double Cosine(double angle) noexcept;
/// Within [-pi/2, pi/2].
double ArcTangent(double slope) noexcept;
/// The angle of the direction (x, y), within [-pi, pi].
double ArcTangent(double y, double x) noexcept;

} // namespace qmv40
