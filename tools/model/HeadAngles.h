#pragma once

namespace qmv40::model {

/// Where the head stands or is to stand, degrees.
struct HeadAngles {
    double a;
    double b;
};

} // namespace qmv40::model
