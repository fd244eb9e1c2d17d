#pragma once

#include "tools/component/Calculator.h"
#include "tools/model/Vector3.h"

namespace qmv40::cli {

/// What the component made of a capture. All of it comes from the component itself: its interface gives the head
/// centre, the rest stands in the file that it saves.
struct ComputedHead {
    XYZData headCentre;
    XYZData safePosition;
    double rotationAroundZ = 0.0; ///< degrees
};

/// Of the geometry that the calculator was given.
ComputedHead AnswerOf(component::Calculator& calculator);

/// The shift of unlocking that is in force on this machine.
model::Vector3 UnlockingInForce();

} // namespace qmv40::cli
