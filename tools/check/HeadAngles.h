#pragma once

/// Where the head stands or is to stand, degrees.
struct HeadAngles {
    double a;
    double b;
};
