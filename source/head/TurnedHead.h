#pragma once

#include "maths/CQuaternion.h"

#include <memory>

class RoundThePole;

/// A head turned to given angles, for who asks more than one thing about them: each turn is made once, that
/// about A when a position first needs it. RoundThePole's operations of the same names are these, asked once. Degrees,
/// machine coordinates. The head must outlive it. Failures are raised as codes (RaiseError.h), in the name of
/// RoundThePole's operation.
class TurnedHead {
public:
    TurnedHead(const RoundThePole& theHead, double theA, double b);

    /// Where the machine stands `distance` short of engagement, along the approach direction.
    CMaVector ApproachPosition(double distance);
    /// Where the drive cup sits on the peg.
    CMaVector EngagementPosition();
    /// The direction of the A axis: B turns it, A does not.
    CMaVector RotatedAAxis() const;

private:
    const CQuaternion& HeadTurn();
    /// Where the machine stands when the turned head puts the point `cupFromCentre` of its own frame where the peg is.
    CMaVector PositionWith(const CMaVector& cupFromCentre);

    const RoundThePole& head;
    double a;
    CQuaternion turnAboutB;
    std::unique_ptr<CQuaternion> headTurn; ///< from A = 0, B = 0 to the angles; none until it is needed
};
