#pragma once

namespace qmv40::model {

/// The present or a wanted position of the head, degrees.
struct HeadAngles {
    double a;
    double b;
};

} // namespace qmv40::model
