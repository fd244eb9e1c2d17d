#pragma once

#include "tools/model/Vector3.h"

#include <cstdint>
#include <random>
#include <vector>

/// A capture as a person makes it, point by point, on a head on paper. Each measurement has its own circumstances, so
/// that anything can go wrong between two of them. Machine coordinates, millimetres, degrees.
namespace paper {

using qmv40::model::Vector3;

/// One line of a capture: the angles as they were written down, and the machine's position as it was read.
struct CapturedLine {
    double a = 0.0;
    double b = 0.0;
    Vector3 position;
};

/// One measurement of the pole sphere.
struct Measurement {
    double a = 0.0;          ///< where the head stands
    double b = 0.0;          //
    double writtenA = 0.0;   ///< what is written down
    double writtenB = 0.0;   //
    Vector3 sphere;          ///< the centre of the pole sphere
    double mounting = 0.0;   ///< how far the head is mounted turned about machine Z
    Vector3 tip;             ///< the stylus tip, in the head's frame at A = B = 0
    Vector3 shift;           ///< what the reading is off by: the shift of unlocking, an offset in force
    double leanX = 0.0;      ///< the B axis is turned about machine X and Y
    double leanY = 0.0;      //
    double squareness = 0.0; ///< the A axis is turned about the head's Y, out of square to the B axis
    double axisOffset = 0.0; ///< the A axis passes the B axis at this distance, along the head's Y

    /// Where the machine stands with the tip in the sphere's centre, without noise.
    Vector3 Reading() const;
    /// The line that is written down.
    CapturedLine Line() const { return {writtenA, writtenB, Reading()}; }
};

using Measurements = std::vector<Measurement>;

/// The lines of the measurements, with independent normal noise of the given standard deviation on every coordinate.
std::vector<CapturedLine> LinesOf(const Measurements& measurements, double noise, std::mt19937_64& generator);

} // namespace paper
