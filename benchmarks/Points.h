#pragma once

#include "maths/CMaPointArray.h"

#include <cstddef>
#include <vector>

/// One set of points in the two layouts that the libraries read, so that no library copies it.
struct Points {
    struct Point {
        double x, y, z;
    };
    std::vector<Point> list;
    CMaPointArray array;
};

/// The shape that a set of points was made from, to compare answers with.
inline constexpr Points::Point arcCentre{412.5, -178.25, -655.0};
inline constexpr double arcRadius = 180.0;

/// `count` points evenly over 90 degrees of a tilted circle of radius 180, each coordinate off by normal noise of
/// 0.002: what a probe captures on a pole sphere, in millimetres. The same count gives the same points.
Points ArcOf90Degrees(std::size_t count);

/// `count` points along a straight line of length 200, with the same noise.
Points StraightLine(std::size_t count);
