// Where the machine must stand for the drive cup to meet the peg, and where the A axis points after a turn of the head.

#include "head/RoundThePole.h"
#include "head/TurnedHead.h"

void RoundThePole::ApproachPosition(double a, double b, double distance, CMaVector& out) const {
    out = TurnedHead(*this, a, b).ApproachPosition(distance);
}

void RoundThePole::EngagementPosition(double a, double b, CMaVector& out) const {
    out = TurnedHead(*this, a, b).EngagementPosition();
}

void RoundThePole::RotatedAAxis(double b, CMaVector& out) const { out = TurnedHead(*this, 0.0, b).RotatedAAxis(); }
