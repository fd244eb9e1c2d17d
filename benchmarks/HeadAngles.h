#pragma once

#include <vector>

struct HeadAngles {
    double a, b;
};

/// Every position that a head can be indexed to: A from 0 to 90 and B from -180 to 180, in steps of 15.
inline std::vector<HeadAngles> AllHeadAngles() {
    std::vector<HeadAngles> all;
    for (int a = 0; a <= 90; a += 15)
        for (int b = -180; b <= 180; b += 15) all.push_back({static_cast<double>(a), static_cast<double>(b)});
    return all;
}
