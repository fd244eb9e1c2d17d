#pragma once

#include "tools/component/Calculator.h"
#include "tools/model/Vector3.h"

namespace qmv40::cli {

/// The component's answer to a capture. All of it comes from the component itself: its interface returns the head
/// centre, the file that it saves has the rest.
struct ComputedHead {
    XYZData headCentre;
    XYZData safePosition;
    double rotationAroundZ = 0.0; ///< degrees
};

/// The answer of a calculator that was given a geometry.
ComputedHead AnswerOf(component::Calculator& calculator);

/// The locked-to-unlocked offset in force: of --settings, or of this machine.
model::Vector3 UnlockingInForce();

} // namespace qmv40::cli
